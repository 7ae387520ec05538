#include "kvstation/NotedCollection.h"

#include "kvstation/CallLog.h"
#include "kvstation/Library.h"
#include "kvstation/ObservedLibrary.h"

namespace kvstation {
namespace {

class NotedCalls : public simwin::CallObserver {
  public:
    NotedCalls(SharedCollection& shared, simwin::CallObserver* observer) : m_shared(shared), m_observer(observer) {}

    void begins(const simwin::ObservedCall& call) override {
        m_steps.begins(call);
        noteCall(call);
        if (m_observer != nullptr)
            m_observer->begins(call);
    }
    void ends(const simwin::ObservedCall& call) override {
        if (m_observer != nullptr)
            m_observer->ends(call);
    }

  private:
    void noteCall(const simwin::ObservedCall& call) {
        // A process that is ended while it collects unloads the library, but that is not where the collection ended.
        if (m_steps.step() == "module end")
            return;
        note(m_shared.step, "collecting: " + std::string(m_steps.step()));
        note(m_shared.call, call.name + "(" + call.arguments + ")");
    }

    SharedCollection& m_shared;
    simwin::CallObserver* m_observer;
    CallLog m_steps;  // keeps no calls: it is told of their beginnings alone
};

RecordBytes collectWithLibrary(SharedCollection& shared, simwin::CallObserver* observer) {
    note(shared.step, "loading kvcstat64.dll");
    const Library library;
    note(shared.step, "collecting");
    NotedCalls calls(shared, observer);
    const RecordBytes record = collectObserved(library, calls);
    note(shared.step, "unloading kvcstat64.dll");
    return record;
}

}  // namespace

RecordBytes collectNoted(SharedCollection& shared, simwin::CallObserver* observer) {
    const RecordBytes record = collectWithLibrary(shared, observer);
    note(shared.step, "telling what was collected");
    note(shared.call, "");
    return record;
}

}  // namespace kvstation
