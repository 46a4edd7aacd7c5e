#ifdef GL_ES
precision highp float;
#endif

varying vec2 texCoord;

uniform sampler2D diffuseTexture;

void main()
{
    gl_FragColor = texture2D(diffuseTexture, texCoord);
}
