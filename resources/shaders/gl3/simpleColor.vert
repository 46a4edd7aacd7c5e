#version 140

in vec3 vertexPosition;
out vec3 worldPosition;

uniform mat4 modelMatrix;
uniform mat4 mvp;

void main()
{
    worldPosition = vec3(modelMatrix * vec4(vertexPosition, 1.0));
    gl_Position = mvp * vec4(worldPosition, 1.0);
}
