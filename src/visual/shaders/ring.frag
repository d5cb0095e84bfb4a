#version 440

// The ring as ring_formula.cpp words it. The weights of the bands are the powers of one
// exponential, so that each pixel needs one instead of sixteen.

layout(location = 0) in vec2 qt_TexCoord0;
layout(location = 0) out vec4 fragColor;

layout(std140, binding = 0) uniform buf
{
    mat4 qt_Matrix;
    float qt_Opacity;
    float level;
    float time;
    mat4 bands;
};

const float pi = 3.14159265;
const float base = 0.50;
const vec3 green = vec3(0.22, 1.0, 0.53);
const vec3 pale = vec3(0.80, 1.0, 0.90);

float bell(float distance, float width)
{
    return exp(-distance * distance / (2.0 * width * width));
}

// Sum of four bands' weights (y) and of their weighted values (x), by powers of q.
vec2 blend(vec2 sum, vec4 values, vec4 weights, float q)
{
    sum = sum * q + vec2(values.w, 1.0) * weights.w;
    sum = sum * q + vec2(values.z, 1.0) * weights.z;
    sum = sum * q + vec2(values.y, 1.0) * weights.y;
    return sum * q + vec2(values.x, 1.0) * weights.x;
}

float swellOf(vec2 uv)
{
    // exp(-(x - n)^2 / s) is, but for a factor that all bands share, exp(2 x m / s) *
    // exp(-m^2 / s) with x and m counted from the middle band.
    const float s = 2.0 * 1.25 * 1.25;
    float x = abs(atan(uv.x, uv.y)) / pi * 15.0 - 7.5;
    float q = exp(2.0 * x / s);
    const vec4 outer = exp(-vec4(56.25, 42.25, 30.25, 20.25) / s);
    const vec4 inner = exp(-vec4(12.25, 6.25, 2.25, 0.25) / s);
    vec2 sum = blend(vec2(0.0), bands[3], outer.wzyx, q);
    sum = blend(sum, bands[2], inner.wzyx, q);
    sum = blend(sum, bands[1], inner, q);
    sum = blend(sum, bands[0], outer, q);
    return sum.x / sum.y;
}

void main()
{
    vec2 uv = vec2(qt_TexCoord0.x - 0.5, 0.5 - qt_TexCoord0.y) * 2.0;
    float r = length(uv);
    float angle = atan(uv.y, uv.x);
    float swell = swellOf(uv);

    vec3 colour = vec3(0.0);
    float alpha = 0.0;
    for (int n = 0; n < 3; ++n) {
        float i = float(n);
        float flow = 0.5 + 0.5 * sin(angle * (3.0 + 2.0 * i) + time * (1.1 + 0.6 * i) + 2.1 * i);
        float ripple = 0.010 * sin(5.0 * angle - 1.6 * time + 1.7 * i)
            + 0.006 * sin(9.0 * angle + 2.3 * time + i);
        float wave =
            base + ripple + swell * (0.34 - 0.085 * i) * (0.6 + 0.4 * flow) + level * 0.02;
        float line = bell(r - wave, 0.0045);
        float halo = bell(r - wave, 0.035) * (0.30 + 0.25 * level);
        float body = smoothstep(base - 0.006, base + 0.006, r)
            * (1.0 - smoothstep(wave - 0.02, wave, r)) * (0.16 - 0.035 * i);
        float a = line * (1.0 - 0.28 * i) + halo * (1.0 - 0.2 * i) + body;
        colour += mix(green, pale, clamp(line, 0.0, 1.0)) * a;
        alpha += a;
    }

    float heart = 0.30 + 0.035 * level;
    float edge = bell(r - base, 0.003) * 0.55;
    float rim = bell(r - heart, 0.004) * 0.9;
    float glow = (1.0 - smoothstep(0.0, heart, r)) * (0.05 + 0.5 * level)
        * (0.35 + 0.65 * (1.0 - r / heart));
    colour += green * (edge + rim + glow);
    alpha += edge + rim + glow;

    fragColor = vec4(min(colour, vec3(1.0)), clamp(alpha, 0.0, 1.0)) * qt_Opacity;
}
