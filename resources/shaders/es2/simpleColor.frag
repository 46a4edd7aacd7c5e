#ifdef GL_ES
precision mediump float;
#endif

void main()
{
    gl_FragColor = vec4(1.0, 0.5, 0.5, 1.0);
}
