attribute vec3 vertexPosition;

uniform mat4 modelViewProjection;

void main()
{
    gl_Position = modelViewProjection * vec4(vertexPosition, 1.0);
    // Behind the labels, which stand at 0.
    gl_Position.z = 0.001 * gl_Position.w;
}
