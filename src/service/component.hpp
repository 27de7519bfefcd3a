#pragma once
// Start-up of the component inside a process: the one font-metrics source for the engine and
// the export filters reports write through. Idempotent; every PrintService calls it, so a host
// has nothing to do beyond installing its host classes.

namespace qr::service {

void initializeComponent();

} // namespace qr::service
