#pragma once

namespace bench {

// Makes the machine the same for whoever is measured next. Everything written before is on the disk, so that nobody's
// time goes into writing it. Memory has been in use a moment ago: a virtual machine's host may take back what is free
// and needs long to hand it out again, many times as long as a kernel of one's own.
void settleMachine();

}  // namespace bench
