// A chain device with one pin of each kind, for tests about the choice of pins.
#pragma once

#include "setup/DesignSetup.h"

// Entity "chip", pin maps "BGA" (chosen) and "QFP":
//   DATA  inout (0 to 15)   driven and sensed; in BGA on balls D0 to D15
//   ADDR  out (23 downto 0) driven only; in BGA on balls A0 to A23
//   SEL   out               driven only; ball B1
//   IN    in                sensed only; ball B2
//   NC    inout             in no boundary cell and in no pin map
//   VCC   linkage (1 to 2)
OmChainDevice MakePinDevice();

// One such device, and the buses padded; nothing connected.
OmDesignSetup MakePinSetup();
