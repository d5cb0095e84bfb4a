#version 440

#extension GL_GOOGLE_include_directive : enable
#include "varying.glsl"

layout(location = 0) in vec2 place;
layout(location = 1) in vec2 spot;
layout(location = 2) in vec4 light;

layout(location = 0) LINEAR out vec2 texel;
layout(location = 1) CONSTANT out vec4 colour;

layout(std140, binding = 0) uniform buf
{
    mat4 qt_Matrix;
    float qt_Opacity;
    vec4 glow; // premultiplied
};

void main()
{
    texel = spot;
    colour = light;
    gl_Position = qt_Matrix * vec4(place, 0.0, 1.0);
}
