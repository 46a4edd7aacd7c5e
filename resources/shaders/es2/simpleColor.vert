attribute vec3 vertexPosition;

uniform mat4 modelMatrix;
uniform mat4 mvp;

void main()
{
    vec3 worldPosition = vec3(modelMatrix * vec4(vertexPosition, 1.0));
    gl_Position = mvp * vec4(worldPosition, 1.0);
}
