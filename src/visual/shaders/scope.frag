#version 440

// The oscilloscope line as ring_formula.cpp words it.

layout(location = 0) in vec2 qt_TexCoord0;
layout(location = 0) out vec4 fragColor;

layout(std140, binding = 0) uniform buf
{
    mat4 qt_Matrix;
    float qt_Opacity;
    float amplitude;
    float time;
};

const float pi = 3.14159265;

float bell(float distance, float width)
{
    return exp(-distance * distance / (2.0 * width * width));
}

void main()
{
    float x = qt_TexCoord0.x;
    float pin = sin(pi * x);
    float wave = (0.5 * sin(19.0 * x - 5.0 * time) + 0.28 * sin(41.0 * x + 7.5 * time)
                     + 0.42 * sin(7.0 * x - 2.2 * time))
        * pin * amplitude;
    float away = (0.5 - qt_TexCoord0.y) - 0.42 * wave;
    float line = bell(away, 0.03);
    float halo = bell(away, 0.16) * 0.35;
    float a = clamp(line + halo, 0.0, 1.0) * smoothstep(0.0, 0.06, pin);
    fragColor = vec4(mix(vec3(0.22, 1.0, 0.53), vec3(0.8, 1.0, 0.9), line), 1.0) * a * qt_Opacity;
}
