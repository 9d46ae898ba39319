// Random values for all parameters of the effect.
#ifndef VITRELL_WHOLE_RANDOM_PARAMETERS_H_
#define VITRELL_WHOLE_RANDOM_PARAMETERS_H_

#include "headless/effect_host.h"
#include "whole/dice.h"
#include "whole/random_case.h"
#include "whole/random_pictures.h"

namespace vitrell::whole {

// Sets every parameter. Stages are often on alone and often together; amounts are none, small or as
// large as the picture's size affords.
void SetRandomParameters(Dice& dice, PictureSize size, bool hasCustomLayer,
                         headless::EffectHost& host);

}  // namespace vitrell::whole

#endif  // VITRELL_WHOLE_RANDOM_PARAMETERS_H_
