#ifdef GL_ES
precision highp float;
#endif

uniform vec4 handleColor;

void main()
{
    gl_FragColor = handleColor;
}
