// The steps of the example job. Each reads its documents from `dataDir`,
// prints what the library made of them to `out`, and gives 0 on success.
#ifndef ZRX_EXAMPLE_STEPS_H
#define ZRX_EXAMPLE_STEPS_H

#include <ostream>
#include <string>

// The data set description: examples/data/job.datamodel.xml as a variable table.
int DataModelStep(const std::string& dataDir, std::ostream& out);
// The job's settings: examples/data/job.settings.xml, its variables, roles and parameters.
int SettingsStep(const std::string& dataDir, std::ostream& out);
// The split analysis: the models of examples/data/split/ combined into one
// PMML document written to `outDir`.
int CombineStep(const std::string& dataDir, const std::string& outDir, std::ostream& out);

#endif
