// Waits of a few microseconds, as the clock edges of a parallel-port cable need them: too short to
// sleep, so the processor spins on the performance counter.
#pragma once

class OmCableTiming {
  public:
    OmCableTiming();

    // Returns at once if the machine has no usable counter, or if looking at it takes longer than
    // the wait.
    void Wait(double microseconds) const;

    double ticksPerMicrosecond = -1.0; // negative without a counter
    double callOverhead = 0.0;         // of one look at the counter, in microseconds

  private:
    double MeasureOverhead(bool& moves) const;
};
