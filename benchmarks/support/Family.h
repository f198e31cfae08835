// Memory, files and processes of a program and its children.
#pragma once

namespace benchmarks {

struct Family {
  double resident = 0;        // MiB of this process
  double anonymous = 0;       // MiB of it that are its own
  int files = 0;              // descriptors that this process has open
  int webProcesses = 0;       // processes that run pages
  double webResident = 0;     // MiB of those together
  double helperResident = 0;  // MiB of the network process
};

/// The present values.
Family measureFamily();

}  // namespace benchmarks
