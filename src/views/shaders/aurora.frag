#version 440
// SPDX-License-Identifier: MIT
// Fills the aurora between the corners of its grid.

layout(location = 0) in vec3 color;
layout(location = 0) out vec4 fragColor;
layout(std140, binding = 0) uniform buf {
    mat4 qt_Matrix;
    float qt_Opacity;
    vec2 size;  // points
    float turn; // of the angular gradient, radians
    vec4 tint;
};

void main() {
    // One step of noise keeps the dark ramps from banding. The weights are those of "interleaved
    // gradient noise" (J. Jimenez, 2014), which shows no pattern.
    float noise = fract(52.9829189 * fract(dot(gl_FragCoord.xy, vec2(0.06711056, 0.00583715))));
    fragColor = vec4(color + (noise - 0.5) / 255.0, 1.0) * qt_Opacity;
}
