// The one translation unit that holds the image decoder.
#define STB_IMAGE_IMPLEMENTATION
#define STBI_NO_STDIO_FOPEN_S
#define STBI_ONLY_BMP
#define STBI_ONLY_PNG
#define STBI_ONLY_JPEG
#include <stb/stb_image.h>
