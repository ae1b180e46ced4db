#include "jobs/PlacedData.h"

#include "platform/UserInterface.h"

void OmPlacedData::Place(const OmDataChoice& choice) {
    original_ = choice.image;
    moved_.ClearImage();
    if (!choice.move)
        return;
    const OmBusyCursor busy;
    moved_ = original_->ShiftedBy(choice.newStart - original_->GetChunks().front().address);
}
