#pragma once

#include <QString>
#include <cstddef>

// Heap bytes held by the process, as the allocator counts them (small blocks and
// mapped large ones), for bytes-per-instance figures over many instances.
class HeapMeter
{
public:
    HeapMeter();
    // Bytes allocated since construction, per instance.
    double bytesPer(int instances) const;
    static size_t heapBytes();
    // The common report of the heap figures; false when the JSON cannot be written.
    static bool report(double rowBytes, double itemBytes, int instances, const QString& jsonPath);

private:
    size_t mBefore;
};
