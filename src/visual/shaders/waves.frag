#version 440

#extension GL_GOOGLE_include_directive : enable
#include "varying.glsl"

// The ring's waves as ring_formula.cpp words them, from where its heart ends. What depends on the
// angle needs no angle: a sine of k angles comes of the k-th power of a complex number, and the
// weights of the bands are the powers of one exponential.

layout(location = 0) LINEAR in vec2 spot; // from the ring's middle, y up; 1 is the picture's edge
layout(location = 0) out vec4 fragColor;

layout(std140, binding = 0) uniform buf
{
    mat4 qt_Matrix;
    float qt_Opacity;
    vec4 bands[4];
    vec4 ripple[3]; // of each layer: cosine and sine of the phase, of 5 angles and of 9
    vec4 flow; // likewise of the layers' flow: 3 angles, 5
    vec4 look; // 7 angles; level, opacity
};

const float pi = 3.14159265;
const float base = 0.50;
const vec3 green = vec3(0.22, 1.0, 0.53);
const vec3 pale = vec3(0.80, 1.0, 0.90);

vec2 times(vec2 a, vec2 b)
{
    return vec2(a.x * b.x - a.y * b.y, a.x * b.y + a.y * b.x);
}

// Sine of an angle, given as a complex number, and a phase.
float sine(vec2 angle, vec2 phase)
{
    return angle.y * phase.x + angle.x * phase.y;
}

// Sum of four bands' weights (y) and of their weighted values (x), by powers of q.
vec2 blend(vec2 sum, vec4 values, vec4 weights, float q)
{
    sum = sum * q + vec2(values.w, 1.0) * weights.w;
    sum = sum * q + vec2(values.z, 1.0) * weights.z;
    sum = sum * q + vec2(values.y, 1.0) * weights.y;
    return sum * q + vec2(values.x, 1.0) * weights.x;
}

// The angle from the top, 0 to pi.
float fromTop(vec2 at)
{
    vec2 a = abs(at);
    float t = min(a.x, a.y) / max(a.x, a.y);
    float s = t * t;
    float angle = t * (0.99997726 + s * (-0.33262347 + s * (0.19354346 + s * (-0.11643287
        + s * (0.05265332 - s * 0.01172120)))));
    angle = a.x > a.y ? pi / 2.0 - angle : angle;
    return at.y < 0.0 ? pi - angle : angle;
}

float swellOf(vec2 at)
{
    // exp(-(x - n)^2 / s) is, but for a factor that all bands share, exp(2 x m / s) *
    // exp(-m^2 / s) with x and m counted from the middle band.
    const float s = 2.0 * 1.25 * 1.25;
    float x = fromTop(at) / pi * 15.0 - 7.5;
    float q = exp(2.0 * x / s);
    const vec4 outer = exp(-vec4(56.25, 42.25, 30.25, 20.25) / s);
    const vec4 inner = exp(-vec4(12.25, 6.25, 2.25, 0.25) / s);
    vec2 sum = blend(vec2(0.0), bands[3], outer.wzyx, q);
    sum = blend(sum, bands[2], inner.wzyx, q);
    sum = blend(sum, bands[1], inner, q);
    sum = blend(sum, bands[0], outer, q);
    return sum.x / sum.y;
}

// One wave: its light (w) and how pale it is (x).
vec2 layer(float r, float wave, float body, float line, float halo)
{
    float d = r - wave;
    float bright = exp(d * d * (-0.5 / (0.0045 * 0.0045)));
    float soft = exp(d * d * (-0.5 / (0.035 * 0.035)));
    float filled = 1.0 - smoothstep(-0.02, 0.0, d);
    return vec2(bright, bright * line + soft * halo + filled * body);
}

void main()
{
    float r = length(spot);
    vec2 one = spot / r;
    vec2 two = times(one, one);
    vec2 three = times(two, one);
    vec2 five = times(three, two);
    vec2 seven = times(five, two);
    vec2 nine = times(seven, two);
    vec3 flows = vec3(sine(three, flow.xy), sine(five, flow.zw), sine(seven, look.xy));
    vec3 waves = base
        + vec3(sine(five, ripple[0].xy), sine(five, ripple[1].xy), sine(five, ripple[2].xy)) * 0.010
        + vec3(sine(nine, ripple[0].zw), sine(nine, ripple[1].zw), sine(nine, ripple[2].zw)) * 0.006
        + swellOf(spot) * vec3(0.34, 0.255, 0.17) * (0.8 + 0.2 * flows) + look.z * 0.02;

    float body = smoothstep(base - 0.006, base + 0.006, r);
    float halo = 0.30 + 0.25 * look.z;
    vec2 a = layer(r, waves.x, body * 0.16, 1.0, halo);
    vec2 b = layer(r, waves.y, body * 0.125, 0.72, halo * 0.8);
    vec2 c = layer(r, waves.z, body * 0.09, 0.44, halo * 0.6);
    float away = (r - base) / 0.003;
    float edge = exp(-0.5 * away * away) * 0.55;

    float light = a.y + b.y + c.y + edge;
    float paleness = a.x * a.y + b.x * b.y + c.x * c.y;
    vec3 colour = green * light + (pale - green) * paleness;
    fragColor = vec4(min(colour, vec3(1.0)), min(light, 1.0)) * (look.w * qt_Opacity);
}
