attribute vec3 vertexPosition;
attribute vec3 vertexNormal;

varying vec3 worldPosition;
varying vec3 worldNormal;

uniform mat4 modelMatrix;
uniform mat3 modelNormalMatrix;
uniform mat4 viewProjectionMatrix;
uniform float metresPerPixel;
uniform float minimumPixels;

void main()
{
    float radius = length(modelMatrix[0].xyz);
    float missing = max(0.0, 0.5 * minimumPixels * metresPerPixel - radius);
    // A ball has one size all round; a tube grows across its axis only.
    float ball = step(abs(length(modelMatrix[1].xyz) - radius), 0.001 * radius);
    vec3 across = vec3(vertexPosition.x, ball * vertexPosition.y, vertexPosition.z);
    vec3 outward = (modelMatrix * vec4(across, 0.0)).xyz / max(radius, 1e-6);
    worldPosition = (modelMatrix * vec4(vertexPosition, 1.0)).xyz + outward * missing;
    worldNormal = normalize(modelNormalMatrix * vertexNormal);
    gl_Position = viewProjectionMatrix * vec4(worldPosition, 1.0);
}
