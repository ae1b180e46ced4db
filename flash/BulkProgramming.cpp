#include "flash/BulkProgramming.h"

#include "flash/Progress.h"
#include "flash/StatusProgrammer.h"
#include "flash/WordSource.h"

namespace {

int ItemsBlind(OmBoundaryScanBus& bus, const OmBulkCommands& commands, int wait) {
    constexpr int kClosingRise = 1;
    OmBusCycleBatch sample(bus);
    commands.AppendBlindItem(sample, OmProgramBlock(commands.wordsPerBlock), wait);
    return bus.ItemsPerTransfer(static_cast<int>(sample.scans.size()), kClosingRise,
                                OmTransferKind::Blind);
}

void Finish(OmBoundaryScanBus& bus, const OmBulkCommands& commands, OmBusCycleBatch& batch) {
    bus.FlushAndSettle(batch);
    commands.Close(batch);
    bus.DriveBusIdle();
}

// Draws and appends up to `items` items and sends them.
void RunBlindBatch(const OmBulkCommands& commands, OmBusCycleBatch& batch, OmWordSource& source,
                   int items, int wait) {
    std::vector<OmProgramBlock> drawn;
    source.Draw(drawn, items);
    for (const OmProgramBlock& item : drawn)
        commands.AppendBlindItem(batch, item, wait);
    batch.AppendRise(); // ends the last write
    batch.Run();
    batch.Clear();
}

} // namespace

OmFlashResult ProgramWithStatus(OmBoundaryScanBus& bus, const OmBulkCommands& commands,
                                OmProgressCallback& callback, const OmDataImage& image, int& wait,
                                uint32_t& count) {
    OmWordSource source(image, bus.BusWordBytes(), commands.wordsPerBlock, count);
    if (source.IsFinished())
        return OmFlashResult::Done;
    commands.Open(bus);
    OmStatusProgrammer programmer(bus, commands, callback, wait);
    const OmFlashResult result = programmer.Program(source);
    Finish(bus, commands, programmer.GetBatch());
    return programmer.TellFailures(result);
}

OmFlashResult ProgramBlind(OmBoundaryScanBus& bus, const OmBulkCommands& commands,
                           OmProgressCallback& callback, const OmDataImage& image, int wait,
                           uint32_t& count) {
    OmWordSource source(image, bus.BusWordBytes(), commands.wordsPerBlock, count);
    if (source.IsFinished())
        return OmFlashResult::Done;
    commands.Open(bus);
    const int items = ItemsBlind(bus, commands, wait);
    OmBusCycleBatch batch(bus);
    batch.SelectForWriting();
    commands.Enter(batch);
    OmFlashResult result = OmFlashResult::Done;
    while (!source.IsFinished() && result == OmFlashResult::Done) {
        RunBlindBatch(commands, batch, source, items, wait);
        if (!source.Report(callback))
            result = OmFlashResult::Stopped;
    }
    Finish(bus, commands, batch);
    return result;
}
