#pragma once

/// The memory of a virtual machine. What has been free for a second or two its host may take back, and fetching it
/// again takes as long as a whole scan: that would be measured instead, now and then, and more often where more is
/// needed.
namespace HostMemory {

/// Has the host hand over as much memory as the largest sample needs, and frees it: to be called right before what is
/// measured. Nothing to speak of where it is there already.
void fetch();

} // namespace HostMemory
