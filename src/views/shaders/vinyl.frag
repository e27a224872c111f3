#version 440
// SPDX-License-Identifier: MIT
// A record seen from above: the disc, its grooves, and the light that lies on it. The light does not
// turn with the record.

layout(location = 0) in vec2 qt_TexCoord0;
layout(location = 0) out vec4 fragColor;
layout(std140, binding = 0) uniform buf {
    mat4 qt_Matrix;
    float qt_Opacity;
    float label;  // radius of the label, of the disc's
};

const float PI = 3.14159265359;

float band(float x, float at, float width) {
    return exp(-(x - at) * (x - at) / (width * width));
}

void main() {
    vec2 p = (qt_TexCoord0 - 0.5) * 2.0;
    float r = length(p);
    float radius = 1.0 / max(fwidth(p.x), 1e-5); // of the disc, device pixels
    float onDisc = 1.0 - smoothstep(-1.0, 1.0, (r - 1.0) * radius + 1.0);

    float shade = 0.028 + 0.012 * (1.0 - r);
    // Grooves: fine ones that fade where they would alias, and the gaps between the tracks.
    float pitch = 46.0;
    float visible = clamp(radius / pitch / 3.0, 0.0, 1.0);
    float groove = 0.5 + 0.5 * cos(r * pitch * 2.0 * PI);
    float grooved = smoothstep(label + 0.05, label + 0.08, r) * (1.0 - smoothstep(0.955, 0.975, r));
    shade += 0.022 * groove * groove * groove * groove * grooved * visible;
    for (int i = 0; i < 3; ++i)
        shade -= 0.016 * band(r, label + (0.97 - label) * (0.27 + 0.24 * float(i)), 0.006) * grooved;

    // Two soft wedges of light, opposite each other.
    float angle = atan(p.y, p.x);
    float wedge = pow(0.5 + 0.5 * cos(2.0 * (angle + 0.36 * PI)), 28.0);
    float second = pow(0.5 + 0.5 * cos(2.0 * (angle - 0.10 * PI)), 60.0);
    shade += (0.105 * wedge + 0.03 * second) * smoothstep(label, 0.6, r) * (0.82 + 0.18 * groove);
    // The bevel of the edge.
    shade += 0.07 * band(r, 0.992, 0.006);

    vec3 color = vec3(shade, shade, shade * 1.04);
    fragColor = vec4(color * onDisc, onDisc) * qt_Opacity;
}
