// The module's entry: what the host calls when it loads korvel.arx and when it lets it go.
#include "frame/message.h"
#include "frame/plugin.h"
#include "host/arx/command_stack.h"
#include "host/arx/documents.h"
#include "host/arx/editor_reactor.h"
#include "host/arx/resources.h"
#include "host/arx/sdk.h"
#include "host/arx/session.h"

namespace korvel::arx {

constexpr std::wstring_view module_name = text(Message::ProductName);

class CkorvelApp final : public AcRxArxApp {
 public:
  AcRx::AppRetCode On_kInitAppMsg(void* packet) override {
    const AcRx::AppRetCode result = AcRxArxApp::On_kInitAppMsg(packet);
    run_guarded(module_name, [this] {
      set_plugin(&plugin_);
      documents_.emplace();
      plugin_.on_load();
    });
    return result;
  }

  AcRx::AppRetCode On_kLoadDwgMsg(void* packet) override {
    const AcRx::AppRetCode result = AcRxArxApp::On_kLoadDwgMsg(packet);
    run_guarded(module_name, [this] { stack_.define_functions(); });
    return result;
  }

  AcRx::AppRetCode On_kUnloadAppMsg(void* packet) override {
    run_guarded(module_name, [this] { plugin_.on_unload(); });
    leave_idle_editor();
    documents_.reset();
    set_plugin(nullptr);
    return AcRxArxApp::On_kUnloadAppMsg(packet);
  }

  // The module serves no other program.
  void RegisterServerComponents() override {}

 private:
  ArxCommandStack stack_{run_command_handler};
  korvel::CkorvelApp plugin_{stack_};
  AcApDataManager<CDocData> data_;  // Unconfirmed: where its parameter comes from
  std::optional<DocumentWatch> documents_;
};

}  // namespace korvel::arx

// Unconfirmed: the macro, which defines the entry over one object of the class.
using korvel::arx::CkorvelApp;
IMPLEMENT_ARX_ENTRYPOINT(CkorvelApp)

// One module object per module; it keeps the resources of the host and of the module apart.
AC_IMPLEMENT_EXTENSION_MODULE(korvel_module)

// Unconfirmed: that the kit's headers declare it and leave it to the module.
HINSTANCE _hdllInstance = nullptr;

namespace {

// Unconfirmed: the names of the calls, and that the host's dialog classes want the last one.
void attach_to_host(HINSTANCE instance) {
  _hdllInstance = instance;
  korvel_module.AttachInstance(instance);
  InitAcUiDLL();
}

}  // namespace

extern "C" BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID /*reserved*/) {
  if (reason == DLL_PROCESS_ATTACH) {
    korvel::arx::set_module_instance(instance);
    attach_to_host(instance);
  } else if (reason == DLL_PROCESS_DETACH) {
    korvel_module.DetachInstance();
  }
  return TRUE;
}
