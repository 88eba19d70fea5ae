#include "render/OffscreenContext.h"

#include <EGL/egl.h>
#include <EGL/eglext.h>

#include <cstring>

namespace render {

namespace {

bool hasToken(const char* list, const char* token) {
    if (!list) return false;
    const std::size_t n = std::strlen(token);
    for (const char* p = list; (p = std::strstr(p, token)) != nullptr; p += n)
        if ((p == list || p[-1] == ' ') && (p[n] == ' ' || p[n] == '\0')) return true;
    return false;
}

}  // namespace

OffscreenContext::~OffscreenContext() { destroy(); }

bool OffscreenContext::create(std::string* error) {
    auto fail = [&](const char* why) {
        if (error) *error = why;
        destroy();
        return false;
    };
    destroy();
    const char* clientExts = eglQueryString(EGL_NO_DISPLAY, EGL_EXTENSIONS);
    if (!hasToken(clientExts, "EGL_MESA_platform_surfaceless"))
        return fail("EGL has no surfaceless platform");
    EGLDisplay dpy = eglGetPlatformDisplay(EGL_PLATFORM_SURFACELESS_MESA,
                                           reinterpret_cast<void*>(EGL_DEFAULT_DISPLAY), nullptr);
    if (dpy == EGL_NO_DISPLAY) return fail("no EGL display");
    EGLint major = 0, minor = 0;
    if (!eglInitialize(dpy, &major, &minor)) return fail("EGL does not initialise");
    display_ = dpy;
    if (!hasToken(eglQueryString(dpy, EGL_EXTENSIONS), "EGL_KHR_surfaceless_context"))
        return fail("EGL cannot make a context current without a surface");
    if (!eglBindAPI(EGL_OPENGL_API)) return fail("EGL has no desktop OpenGL");

    const EGLint configAttrs[] = {EGL_RENDERABLE_TYPE,
                                  EGL_OPENGL_BIT,
                                  EGL_SURFACE_TYPE,
                                  EGL_PBUFFER_BIT,
                                  EGL_RED_SIZE,
                                  8,
                                  EGL_GREEN_SIZE,
                                  8,
                                  EGL_BLUE_SIZE,
                                  8,
                                  EGL_NONE};
    EGLConfig config = nullptr;
    EGLint count = 0;
    if (!eglChooseConfig(dpy, configAttrs, &config, 1, &count) || count < 1) config = nullptr;
    const EGLint ctxAttrs[] = {EGL_CONTEXT_MAJOR_VERSION,
                               3,
                               EGL_CONTEXT_MINOR_VERSION,
                               3,
                               EGL_CONTEXT_OPENGL_PROFILE_MASK,
                               EGL_CONTEXT_OPENGL_CORE_PROFILE_BIT,
                               EGL_NONE};
    EGLContext ctx =
        eglCreateContext(dpy, config ? config : EGL_NO_CONFIG_KHR, EGL_NO_CONTEXT, ctxAttrs);
    if (ctx == EGL_NO_CONTEXT) return fail("EGL gives no OpenGL 3.3 core context");
    context_ = ctx;
    if (!makeCurrent()) return fail("EGL context does not become current");
    return true;
}

bool OffscreenContext::makeCurrent() {
    if (!context_) return false;
    return eglMakeCurrent(display_, EGL_NO_SURFACE, EGL_NO_SURFACE, context_) == EGL_TRUE;
}

void OffscreenContext::destroy() {
    if (display_) {
        eglMakeCurrent(display_, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
        if (context_) eglDestroyContext(display_, context_);
        // The display is shared by every context of the process: it stays initialised.
    }
    context_ = nullptr;
    display_ = nullptr;
}

}  // namespace render
