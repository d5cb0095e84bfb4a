#version 440

#extension GL_GOOGLE_include_directive : enable
#include "varying.glsl"

layout(location = 0) in vec2 place;
layout(location = 1) in vec4 within;
layout(location = 2) in float corner;
layout(location = 3) in vec4 light; // premultiplied

layout(location = 0) LINEAR out vec2 spot;
layout(location = 1) CONSTANT out vec3 rounding;
layout(location = 2) LINEAR out vec4 colour;

layout(std140, binding = 0) uniform buf
{
    mat4 qt_Matrix;
    float qt_Opacity;
};

void main()
{
    spot = within.xy;
    rounding = vec3(within.zw, corner);
    colour = light * qt_Opacity;
    gl_Position = qt_Matrix * vec4(place, 0.0, 1.0);
}
