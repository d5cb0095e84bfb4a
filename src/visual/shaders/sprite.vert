#version 440

layout(location = 0) in vec2 place;
layout(location = 1) in vec2 within; // from the middle of the shape, along its own axes
layout(location = 2) in vec4 shape; // half width, half height, corner radius, feather
layout(location = 3) in vec4 light; // premultiplied

layout(location = 0) out vec2 p;
layout(location = 1) out vec4 outline;
layout(location = 2) out vec4 colour;

layout(std140, binding = 0) uniform buf
{
    mat4 qt_Matrix;
    float qt_Opacity;
};

void main()
{
    p = within;
    outline = shape;
    colour = light * qt_Opacity;
    gl_Position = qt_Matrix * vec4(place, 0.0, 1.0);
}
