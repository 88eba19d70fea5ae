#include "render/GlResources.h"

namespace render {

const char* const kVertexShader = R"(#version 330 core
layout(location = 0) in vec3 aPos;
layout(location = 1) in vec4 aColour;
uniform mat4 uMvp;
out vec4 vColour;
void main() {
    vColour = aColour;
    gl_Position = uMvp * vec4(aPos, 1.0);
}
)";

const char* const kFragmentShader = R"(#version 330 core
in vec4 vColour;
out vec4 fragColour;
void main() { fragColour = vColour; }
)";

const char* const kTexVertexShader = R"(#version 330 core
layout(location = 0) in vec3 aPos;
layout(location = 1) in vec4 aColour;
layout(location = 2) in vec2 aUv;
uniform mat4 uMvp;
out vec4 vColour;
out vec2 vUv;
void main() {
    vColour = aColour;
    vUv = aUv;
    gl_Position = uMvp * vec4(aPos, 1.0);
}
)";

const char* const kTexFragmentShader = R"(#version 330 core
in vec4 vColour;
in vec2 vUv;
uniform sampler2D uBitmap;
out vec4 fragColour;
void main() { fragColour = vColour * texture(uBitmap, vUv); }
)";

namespace {

GLuint compile(GLenum kind, const char* src, std::string& log) {
    GLuint s = glCreateShader(kind);
    glShaderSource(s, 1, &src, nullptr);
    glCompileShader(s);
    GLint ok = 0;
    glGetShaderiv(s, GL_COMPILE_STATUS, &ok);
    if (!ok) {
        char buf[1024] = {};
        glGetShaderInfoLog(s, sizeof buf - 1, nullptr, buf);
        log += buf;
        glDeleteShader(s);
        return 0;
    }
    return s;
}

}  // namespace

bool hasExtension(std::string_view name) {
    GLint n = 0;
    glGetIntegerv(GL_NUM_EXTENSIONS, &n);
    for (GLint i = 0; i < n; ++i) {
        const auto* e = reinterpret_cast<const char*>(glGetStringi(GL_EXTENSIONS, i));
        if (e && name == e) return true;
    }
    return false;
}

// Vertex layout shared by every buffer: position, then normalised RGBA bytes.
void setVertexLayout() {
    glEnableVertexAttribArray(0);
    glVertexAttribPointer(0, 3, GL_FLOAT, GL_FALSE, sizeof(Vertex), nullptr);
    glEnableVertexAttribArray(1);
    glVertexAttribPointer(1, 4, GL_UNSIGNED_BYTE, GL_TRUE, sizeof(Vertex),
                          reinterpret_cast<const void*>(offsetof(Vertex, r)));
}

GLuint linkProgram(const char* vsSrc, const char* fsSrc, std::string& log) {
    GLuint vs = compile(GL_VERTEX_SHADER, vsSrc, log);
    GLuint fs = compile(GL_FRAGMENT_SHADER, fsSrc, log);
    if (!vs || !fs) {
        if (vs) glDeleteShader(vs);
        if (fs) glDeleteShader(fs);
        return 0;
    }
    GLuint p = glCreateProgram();
    glAttachShader(p, vs);
    glAttachShader(p, fs);
    glLinkProgram(p);
    glDeleteShader(vs);
    glDeleteShader(fs);
    GLint ok = 0;
    glGetProgramiv(p, GL_LINK_STATUS, &ok);
    if (!ok) {
        log += "a shader program does not link";
        glDeleteProgram(p);
        return 0;
    }
    return p;
}

void setTexVertexLayout() {
    glEnableVertexAttribArray(0);
    glVertexAttribPointer(0, 3, GL_FLOAT, GL_FALSE, sizeof(TexVertex), nullptr);
    glEnableVertexAttribArray(1);
    glVertexAttribPointer(1, 4, GL_UNSIGNED_BYTE, GL_TRUE, sizeof(TexVertex),
                          reinterpret_cast<const void*>(offsetof(TexVertex, r)));
    glEnableVertexAttribArray(2);
    glVertexAttribPointer(2, 2, GL_FLOAT, GL_FALSE, sizeof(TexVertex),
                          reinterpret_cast<const void*>(offsetof(TexVertex, u)));
}

void DynamicBuffer::create() {
    glGenVertexArrays(1, &vao);
    glGenBuffers(1, &vbo);
    glBindVertexArray(vao);
    glBindBuffer(GL_ARRAY_BUFFER, vbo);
    setVertexLayout();
    glBindVertexArray(0);
}

void DynamicBuffer::upload(const std::vector<Vertex>& v) {
    glBindBuffer(GL_ARRAY_BUFFER, vbo);
    const std::size_t bytes = v.size() * sizeof(Vertex);
    if (bytes > capacity) {
        capacity = bytes < 4096 ? 4096 : bytes;
        glBufferData(GL_ARRAY_BUFFER, static_cast<GLsizeiptr>(capacity), nullptr, GL_STREAM_DRAW);
    }
    if (bytes) glBufferSubData(GL_ARRAY_BUFFER, 0, static_cast<GLsizeiptr>(bytes), v.data());
}

void DynamicBuffer::destroy() {
    if (vbo) glDeleteBuffers(1, &vbo);
    if (vao) glDeleteVertexArrays(1, &vao);
    vao = vbo = 0;
    capacity = 0;
}

}  // namespace render
