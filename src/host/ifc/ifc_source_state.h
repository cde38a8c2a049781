// What IfcSource keeps of the IFC++ model between parsing, collecting and meshing. Included
// only by the IfcSource sources, so that IFC++'s headers stay out of the rest of the importer.
#pragma once

#include <cstddef>
#include <ifcpp/model/BuildingModel.h>
#include <ifcpp/model/StatusCallback.h>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "host/ifc/ifc_source.h"
#include "host/ifc/ifc_warning_tally.h"

class IfcMaterialSelect;
class IfcPropertySetDefinition;
class IfcTypeObject;

namespace obsidra::host::ifc {

// The relations of the model, gathered in one pass over its entities, by entity id.
struct Relations {
    std::unordered_map<int, int> containerOf; // product -> spatial element that holds it
    std::unordered_map<int, int> wholeOf;     // part -> the object it is aggregated into
    std::unordered_map<int, shared_ptr<IfcTypeObject>> typeOf;
    std::unordered_map<int, std::vector<shared_ptr<IfcPropertySetDefinition>>> propertySetsOf;
    std::unordered_map<int, shared_ptr<IfcMaterialSelect>> materialOf;
    std::unordered_map<int, std::string> systemTypeOf; // element -> distribution system type
    std::vector<std::pair<int, int>> connections;      // joined elements, in file order
};

struct IfcSource::State {
    shared_ptr<BuildingModel> model;
    double lengthFactor = 1; // file length unit in metres
    Relations relations;
};

// Enough to keep a broken file from burying the result in messages.
constexpr std::size_t kMaxMessagesKept = 200;

// Receives IFC++'s messages and cancellation questions for one phase of an import.
class MessageSink {
public:
    MessageSink(ImportProgress& progress, SourceMessages& messages, ImportPhase phase)
        : m_progress(&progress), m_messages(&messages), m_phase(phase),
          m_warnings(kMaxMessagesKept) {}
    ~MessageSink();

    void Attach(StatusCallback& source);
    // The progress IFC++ reports is only for parsing; the other phases report their own.
    void ForwardProgress(bool forward) { m_forwardProgress = forward; }

private:
    static void OnMessage(void* self, shared_ptr<StatusCallback::Message> message);
    static bool IsCancelled(void* self);

    ImportProgress* m_progress;
    SourceMessages* m_messages;
    ImportPhase m_phase;
    bool m_forwardProgress = false;
    WarningTally m_warnings; // handed to m_messages when the phase ends
    int m_droppedErrors = 0;
};

} // namespace obsidra::host::ifc
