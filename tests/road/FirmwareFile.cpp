#include "tests/road/FirmwareFile.h"

#include <cstdlib>
#include <gtest/gtest.h>

namespace {

std::string Quoted(const std::string& path) {
    return "'" + path + "'";
}

void Run(const std::string& command) {
    EXPECT_EQ(std::system(command.c_str()), 0) << command;
}

bool HaveTool(const std::string& name) {
    return std::system(("command -v " + name + " >/dev/null").c_str()) == 0;
}

} // namespace

bool HaveFirmwareTools() {
    static const bool have = HaveTool("objcopy") && HaveTool("srec_cat");
    return have;
}

std::string WriteFirmware(const TemporaryFolder& folder, const std::vector<FirmwarePiece>& pieces) {
    const std::string target = folder.Path("firmware.srec");
    std::string command = "srec_cat";
    for (size_t i = 0; i < pieces.size(); ++i) {
        const std::vector<uint8_t>& bytes = pieces[i].bytes;
        const std::string path =
            folder.Write("piece" + std::to_string(i),
                         {reinterpret_cast<const char*>(bytes.data()), bytes.size()});
        command += " " + Quoted(path) + " -binary -offset " + std::to_string(pieces[i].address);
    }
    Run(command + " -o " + Quoted(target) + " -motorola -disable=header");
    return target;
}

std::vector<uint8_t> FlattenFirmware(const TemporaryFolder& folder, const std::string& path) {
    const std::string flat = folder.Path("flat.bin");
    Run("objcopy -I srec -O binary --gap-fill 0xff " + Quoted(path) + " " + Quoted(flat));
    const std::string bytes = ReadWholeFile(flat);
    return {bytes.begin(), bytes.end()};
}
