// Converts images and parameters between the headless host and the literal versions.
#ifndef VITRELL_WHOLE_LITERAL_BRIDGE_H_
#define VITRELL_WHOLE_LITERAL_BRIDGE_H_

#include "headless/effect_host.h"
#include "literal/render/render_driver.h"

namespace vitrell::whole {

literal::World ToLiteral(const headless::WorldBuffer& buffer);
headless::WorldBuffer FromLiteral(const literal::World& world);

// The maths functions that the headless host gives to the effect.
literal::Maths LiteralMaths();

// What the literal render needs of a host's parameters and of the pictures of one render. `custom`
// is the literal form of the custom layer, null without one, and must outlive the result.
literal::RenderInputs MakeRenderInputs(const headless::EffectHost& host,
                                       const headless::WorldBuffer& input,
                                       const headless::WorldBuffer& output,
                                       const literal::World* custom, PF_WorldFlags customFlags,
                                       const headless::RenderOptions& options);

}  // namespace vitrell::whole

#endif  // VITRELL_WHOLE_LITERAL_BRIDGE_H_
