#include "gui/GlSetup.h"

#include <QGuiApplication>
#include <QSurfaceFormat>

#if defined(__x86_64__) || defined(__i386__)
#include <immintrin.h>
#endif

namespace gui {

void setDefaultGlFormat() {
    QSurfaceFormat f;
    f.setRenderableType(QSurfaceFormat::OpenGL);
    f.setVersion(3, 3);
    f.setProfile(QSurfaceFormat::CoreProfile);
    f.setDepthBufferSize(24);
    f.setStencilBufferSize(8);
    f.setSamples(0);
    QSurfaceFormat::setDefaultFormat(f);
}

#if defined(__x86_64__) || defined(__i386__)
__attribute__((target("avx"))) static void zeroUpper() { _mm256_zeroupper(); }
#endif

void clearUpperVectorState() {
#if defined(__x86_64__) || defined(__i386__)
    if (__builtin_cpu_supports("avx")) zeroUpper();
#endif
}

bool platformCanShowGl() {
    const QString p = QGuiApplication::platformName();
    return p == "xcb" || p == "wayland" || p.startsWith("wayland") || p == "eglfs";
}

}  // namespace gui
