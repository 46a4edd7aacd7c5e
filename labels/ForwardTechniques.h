#pragma once

#include <QLatin1String>
#include <Qt3DRender/QEffect>
#include <Qt3DRender/QGraphicsApiFilter>

#include <initializer_list>

namespace Torvik::View3d::ForwardTechniques {

/** A kind of OpenGL that an effect draws with. Version 0.0 asks for none. */
struct Api {
    Qt3DRender::QGraphicsApiFilter::Api api;
    Qt3DRender::QGraphicsApiFilter::OpenGLProfile profile;
    int major = 0;
    int minor = 0;
};

/** Adds a technique for each kind, drawn in the scene's forward pass. All share one pass with the program of
 *  ":/shaders/es2/SHADER.vert" and ".frag"; the effect owns everything. */
void add(Qt3DRender::QEffect* effect, QLatin1String shader, std::initializer_list<Api> apis);

} // namespace Torvik::View3d::ForwardTechniques
