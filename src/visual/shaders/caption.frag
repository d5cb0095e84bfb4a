#version 440

#extension GL_GOOGLE_include_directive : enable
#include "varying.glsl"

layout(location = 0) LINEAR in vec2 texel;
layout(location = 1) CONSTANT in vec4 colour; // of the letters; its alpha is that of the whole line

layout(location = 0) out vec4 fragColor;

layout(std140, binding = 0) uniform buf
{
    mat4 qt_Matrix;
    float qt_Opacity;
    vec4 glow; // premultiplied
};
layout(binding = 1) uniform sampler2D raster; // red: the letters, green: the light around them

void main()
{
    vec2 cover = texture(raster, texel).rg;
    vec4 line = vec4(colour.rgb, 1.0) * cover.r + glow * (cover.g * (1.0 - cover.r));
    fragColor = line * (colour.a * qt_Opacity);
}
