#version 440
// SPDX-License-Identifier: MIT
// The light behind the full-screen player, all three layers in one pass: a slowly turning angular
// gradient blurred by 90 points, a glow, and a vignette. Nothing in it is finer than the blur, so it
// is computed at the corners of a grid much smaller than that, and the cells are filled between
// them: a tenth of what it costs at every pixel.

layout(location = 0) in vec4 qt_Vertex;
layout(location = 1) in vec2 qt_MultiTexCoord0;
layout(location = 0) out vec3 color;
out gl_PerVertex { vec4 gl_Position; };
layout(std140, binding = 0) uniform buf {
    mat4 qt_Matrix;
    float qt_Opacity;
    vec2 size;  // points
    float turn; // of the angular gradient, radians
    vec4 tint;
};

const float PI = 3.14159265359;
const float blurRadius = 90.0;
const float sectorOpacity[3] = float[3](0.7, 0.42, 0.58);

// The angular gradient runs tint, black, tint, black, tint, black and stops there, so it jumps from
// black back to the tint at the seam. Its stops are 1/5 apart.
//
// A blur by r points is, at distance d from the centre, close to a blur of the angle with a standard
// deviation of about r/d. Each ramp is a polygon line in the angle, and a Gaussian blur of a polygon
// line has a closed form: a ramp of slope s that begins at a contributes s * G(x - a), where
// G is the integral of the normal distribution function.
float ndf(float x) {
    // Logistic approximation of the normal distribution function, good to 0.01.
    return 1.0 / (1.0 + exp(clamp(-1.702 * x, -60.0, 60.0)));
}
float ramp(float x, float sigma) {
    // Its integral, in the form that holds far from 0.
    return max(x, 0.0) + sigma / 1.702 * log(1.0 + exp(-1.702 * abs(x) / sigma));
}

// A hat of height 1 and half width 1/5 around c, blurred, on a circle of circumference 1.
float hat(float x, float c, float sigma) {
    float d = x - c;
    d -= floor(d + 0.5);
    float w = 0.2;
    return (ramp(d + w, sigma) - 2.0 * ramp(d, sigma) + ramp(d - w, sigma)) / w;
}
// The half hat that falls from 1 at the seam to 0 a fifth further on.
float halfHat(float x, float sigma) {
    float d = x - floor(x + 0.4); // the seam at 0, its surroundings in -0.4...0.6
    float w = 0.2;
    return ndf(d / sigma) - (ramp(d, sigma) - ramp(d - w, sigma)) / w;
}

void main() {
    gl_Position = qt_Matrix * qt_Vertex;

    vec2 p = qt_MultiTexCoord0 * size;
    vec2 fromCentre = p - size * 0.5;
    float distance = length(fromCentre);
    float angle = fract((atan(fromCentre.y, fromCentre.x) - turn) / (2.0 * PI));
    // Near the centre the blur covers the whole circle.
    float sigma = min(blurRadius / (2.0 * PI * max(distance, 1.0)), 0.35);
    float light = sectorOpacity[0] * halfHat(angle, sigma)
        + sectorOpacity[1] * hat(angle, 0.4, sigma)
        + sectorOpacity[2] * hat(angle, 0.8, sigma);
    // Where the blur covers all of it, what is left is the mean of the gradient.
    float mean = 0.2 * (0.5 * sectorOpacity[0] + sectorOpacity[1] + sectorOpacity[2]);
    light = mix(mean, light, smoothstep(0.0, 1.6 * blurRadius, distance));
    color = tint.rgb * clamp(light, 0.0, 1.0) * 0.9;

    float glow = 0.38 * (1.0 - clamp((length(p - size * vec2(0.5, 0.32)) - 40.0) / 520.0, 0.0, 1.0));
    color = mix(color, tint.rgb, glow);

    float edge = clamp((length(p - size * vec2(0.5, 0.42)) - 320.0) / 660.0, 0.0, 1.0);
    float shade = edge < 0.5 ? mix(0.0, 0.22, edge * 2.0) : mix(0.22, 0.52, edge * 2.0 - 1.0);
    color *= 1.0 - shade;
}
