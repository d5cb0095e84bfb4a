#version 440

#extension GL_GOOGLE_include_directive : enable
#include "varying.glsl"

// All in feathers.
layout(location = 0) LINEAR in vec2 spot; // from the shape's middle
layout(location = 1) CONSTANT in vec3 rounding; // of its corners' circles the middle, the radius
layout(location = 2) LINEAR in vec4 colour;

layout(location = 0) out vec4 fragColor;

void main()
{
    // How far it lies inside the rounded box: 0 on its edge, 1 where it is full.
    vec2 q = abs(spot) - rounding.xy;
    float inside = rounding.z - length(max(q, 0.0)) - min(max(q.x, q.y), 0.0);
    fragColor = colour * clamp(inside, 0.0, 1.0);
}
