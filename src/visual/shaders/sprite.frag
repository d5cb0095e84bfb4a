#version 440

layout(location = 0) in vec2 p;
layout(location = 1) in vec4 outline;
layout(location = 2) in vec4 colour;

layout(location = 0) out vec4 fragColor;

void main()
{
    // How far p lies inside the rounded box, in feathers: 0 on its edge, 1 where it is full.
    vec2 q = abs(p) - outline.xy + outline.z;
    float inside = outline.z - length(max(q, 0.0)) - min(max(q.x, q.y), 0.0);
    fragColor = colour * clamp(inside / outline.w, 0.0, 1.0);
}
