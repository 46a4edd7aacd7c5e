attribute vec3 vertexPosition;

uniform mat4 modelMatrix;
uniform mat4 mvp;

void main()
{
    vec4 worldPosition = modelMatrix * vec4(vertexPosition, 1.0);
    gl_Position = mvp * worldPosition;
}
