#version 440

#extension GL_GOOGLE_include_directive : enable
#include "varying.glsl"

layout(location = 0) in vec2 place;
layout(location = 1) in vec2 at;

layout(location = 0) LINEAR out vec2 spot;

layout(std140, binding = 0) uniform buf
{
    mat4 qt_Matrix;
    float qt_Opacity;
};

void main()
{
    spot = at;
    gl_Position = qt_Matrix * vec4(place, 0.0, 1.0);
}
