attribute vec3 vertexPosition;
attribute vec2 vertexTexCoord;

varying vec2 texCoord;

uniform mat4 mvp;
uniform float layerDepth;

void main()
{
    texCoord = vertexTexCoord;
    gl_Position = mvp * vec4(vertexPosition, 1.0);
    gl_Position.z = layerDepth * gl_Position.w;
}
