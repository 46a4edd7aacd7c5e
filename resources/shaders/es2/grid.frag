#ifdef GL_ES
precision highp float;
#endif

const float pi = 3.14159265359;
const float angle = 0.0;

void main()
{
    mat2 rotation = mat2(cos(angle), sin(angle), -sin(angle), cos(angle));
    vec2 Coord = rotation * (0.2 * gl_FragCoord.xy);
    Coord = cos(pi / 10.0 * Coord);
    gl_FragColor = vec4(1.0, 1.0, 1.0, smoothstep(0.999, 1.0, max(Coord.x, Coord.y)));
}
