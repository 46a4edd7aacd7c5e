#version 140

out vec4 fragColor;

void main()
{
    fragColor = vec4(1.0, 0.5, 0.5, 1.0);
}
