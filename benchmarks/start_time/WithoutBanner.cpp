#include "benchmarks/start_time/BareWindow.h"

void addTo(GtkWindow*, GtkBox*) {}
