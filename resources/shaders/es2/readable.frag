#ifdef GL_ES
precision highp float;
#endif

varying vec3 worldPosition;
varying vec3 worldNormal;

uniform vec3 lampPosition;
uniform vec3 kd;
uniform vec3 kblue;
uniform vec3 kyellow;
uniform float alpha;
uniform float beta;

void main()
{
    float facing = dot(normalize(worldNormal), normalize(lampPosition - worldPosition));
    vec3 cool = clamp(kblue + alpha * kd, 0.0, 1.0);
    vec3 warm = clamp(kyellow + beta * kd, 0.0, 1.0);
    gl_FragColor = vec4(mix(cool, warm, 0.5 * (1.0 + facing)), 1.0);
}
