#pragma once

#include "entities/EntityFactory.h"
#include "gpu/RenderTarget.h"
#include "gpu/Shader.h"
#include "gpu/Texture.h"
#include "imagelib/Surface.h"
#include "parameter/Parameter.h"

namespace quillon {

// The kinds of entities and their tags. There is no kind with top byte 5.
class Parameter::Factory final : public EntityFactory<Parameter, 0x1000000> {};
class Shader::Factory final : public EntityFactory<Shader, 0x2000000> {};
class RenderTarget::Factory final : public EntityFactory<RenderTarget, 0x3000000> {};
class Texture::Factory final : public EntityFactory<Texture, 0x4000000> {};
class Surface::Factory final : public EntityFactory<Surface, 0x6000000> {};

}  // namespace quillon
