#version 440

layout(location = 0) in vec4 spot; // all in feathers: from the shape's middle; of its corners'
layout(location = 1) in float radius; // circles the middle, and the radius
layout(location = 2) in vec4 colour;

layout(location = 0) out vec4 fragColor;

void main()
{
    // How far it lies inside the rounded box: 0 on its edge, 1 where it is full.
    vec2 q = abs(spot.xy) - spot.zw;
    float inside = radius - length(max(q, 0.0)) - min(max(q.x, q.y), 0.0);
    fragColor = colour * clamp(inside, 0.0, 1.0);
}
