#include "flash/TransferFit.h"

#include <gtest/gtest.h>

TEST(TransferFit, FillsTheLastTransferBest) {
    const struct {
        const char* what;
        int cap;
        int scansPerItem;
        int extraScans;
        float perTransfer;
        int items;
    } cases[] = {
        {"ten full transfers", 1000, 1, 0, 100, 1000},
        {"nine full transfers beat ten with a rest", 1000, 12, 0, 100, 75},
        {"one transfer is fuller than two", 100, 10, 2, 64.5f, 6},
        {"cap not above the closing scans", 2, 1, 2, 100, 1},
        {"no room for two items", 5, 3, 0, 100, 1},
        {"room for two items", 6, 3, 0, 100, 33},
        {"less than a scan a transfer", 100, 1, 0, 0.5f, 5},
        {"no item fits ten transfers", 100, 6, 0, 0.5f, 1},
        {"at most ten transfers", 100000, 1, 0, 10, 100},
        {"closing scans need room in the first transfer", 1000, 4, 2, 2, 4},
        {"huge transfers", 2000000000, 1000, 1, 1e9f, 1999999},
    };

    for (const auto& row : cases)
        EXPECT_EQ(FitItemsToTransfers(row.cap, row.scansPerItem, row.extraScans, row.perTransfer),
                  row.items)
            << row.what;
}
