// gaengine import vcf: variant calls (VCF, bgzipped VCF, BCF) to a MAP, CDM or PLM input file.
#pragma once

namespace CLI {
class App;
}

namespace gaecli {

// Adds the `vcf` sub-command under `import`.
void RegisterImportVcf(CLI::App& import, int& exit_code);

}  // namespace gaecli
