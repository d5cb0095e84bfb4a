#version 440

#extension GL_GOOGLE_include_directive : enable
#include "varying.glsl"

// The oscilloscope line as ring_formula.cpp words it.

layout(location = 0) LINEAR in vec2 spot; // 0 to 1, y up
layout(location = 0) out vec4 fragColor;

layout(std140, binding = 0) uniform buf
{
    mat4 qt_Matrix;
    float qt_Opacity;
    vec4 look; // amplitude, time
};

const float pi = 3.14159265;

void main()
{
    float x = spot.x;
    float time = look.y;
    float pin = sin(pi * x);
    float wave = (0.5 * sin(19.0 * x - 5.0 * time) + 0.28 * sin(41.0 * x + 7.5 * time)
                     + 0.42 * sin(7.0 * x - 2.2 * time))
        * pin * look.x;
    float away = spot.y - 0.5 - 0.42 * wave;
    float line = exp(away * away * (-0.5 / (0.03 * 0.03)));
    float halo = exp(away * away * (-0.5 / (0.16 * 0.16))) * 0.35;
    float a = min(line + halo, 1.0) * smoothstep(0.0, 0.06, pin);
    fragColor = vec4(mix(vec3(0.22, 1.0, 0.53), vec3(0.8, 1.0, 0.9), line), 1.0) * a * qt_Opacity;
}
