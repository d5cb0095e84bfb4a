#version 440

#extension GL_GOOGLE_include_directive : enable
#include "varying.glsl"

// The ring's heart as ring_formula.cpp words it: what lies within the waves.

layout(location = 0) LINEAR in vec2 spot; // from the ring's middle, y up; 1 is the picture's edge
layout(location = 0) out vec4 fragColor;

layout(std140, binding = 0) uniform buf
{
    mat4 qt_Matrix;
    float qt_Opacity;
    vec4 look; // level, opacity
};

const vec3 green = vec3(0.22, 1.0, 0.53);

void main()
{
    float r = length(spot);
    float level = look.x;
    float heart = 0.30 + 0.035 * level;
    float away = (r - heart) / 0.004;
    float rim = exp(-0.5 * away * away) * 0.9;
    float glow = (1.0 - smoothstep(0.0, heart, r)) * (0.05 + 0.5 * level)
        * (0.35 + 0.65 * (1.0 - r / heart));
    float light = rim + glow;
    fragColor = vec4(min(green * light, vec3(1.0)), min(light, 1.0)) * (look.y * qt_Opacity);
}
