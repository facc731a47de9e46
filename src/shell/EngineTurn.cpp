#include "shell/EngineTurn.h"

#include "engine/AEQuillon2.h"
#include "shell/Instances.h"

namespace quillon {

EngineTurn::EngineTurn(PF_Handle sequenceData, GLUse use)
    : engine(AEQuillon2::instance()), lock(engine, use == GLUse::locked), live(LiveBlockOf(sequenceData)) {
    if (live)
        Instances::instance().select(live->handle);
    else
        engine.selectSequence(nullptr);
}

void EngineTurn::setComposition() const {
    if (live) engine.setContextExtent(live->compWidth, live->compHeight, live->compAspect);
}

}  // namespace quillon
