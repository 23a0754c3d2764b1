#pragma once

// libsecret and what it stands on, loaded at the first use of the key store. Main thread.
//
// Loading costs a resident program more time and memory than the rest of its start-up would like to pay, and most
// starts never need a key at once. The functions have the library's own names and types.

#include <gio/gio.h>
#ifndef SECRET_API_SUBJECT_TO_CHANGE
#define SECRET_API_SUBJECT_TO_CHANGE // for the calls by object path: they save a round trip for every item
#endif
#include <libsecret/secret.h>

namespace orvesa {

struct SecretLibrary {
    /// Null when the library is not installed, which is logged once.
    [[nodiscard]] static const SecretLibrary *load();

    decltype(&::g_object_ref) objectRef = nullptr;
    decltype(&::g_object_unref) objectUnref = nullptr;
    decltype(&::g_cancellable_new) cancellableNew = nullptr;
    decltype(&::g_cancellable_cancel) cancellableCancel = nullptr;
    decltype(&::g_io_error_quark) ioErrorQuark = nullptr;
    decltype(&::g_dbus_error_quark) dbusErrorQuark = nullptr;
    decltype(&::g_bus_get) busGet = nullptr;
    decltype(&::g_bus_get_finish) busGetFinish = nullptr;
    decltype(&::g_dbus_connection_set_exit_on_close) setExitOnClose = nullptr;
    decltype(&::g_dbus_connection_is_closed) busIsClosed = nullptr;
    decltype(&::g_dbus_proxy_get_name_owner) proxyNameOwner = nullptr;
    decltype(&::g_dbus_connection_call) busCall = nullptr;
    decltype(&::g_dbus_connection_call_finish) busCallFinish = nullptr;
    decltype(&::g_dbus_connection_signal_subscribe) signalSubscribe = nullptr;
    decltype(&::g_dbus_connection_signal_unsubscribe) signalUnsubscribe = nullptr;
    decltype(&::secret_error_get_quark) secretErrorQuark = nullptr;
    decltype(&::secret_service_get) serviceGet = nullptr;
    decltype(&::secret_service_get_finish) serviceGetFinish = nullptr;
    decltype(&::secret_service_search_for_dbus_paths) search = nullptr;
    decltype(&::secret_service_search_for_dbus_paths_finish) searchFinish = nullptr;
    decltype(&::secret_service_unlock_dbus_paths) unlock = nullptr;
    decltype(&::secret_service_unlock_dbus_paths_finish) unlockFinish = nullptr;
    decltype(&::secret_service_get_secret_for_dbus_path) getSecret = nullptr;
    decltype(&::secret_service_get_secret_for_dbus_path_finish) getSecretFinish = nullptr;
    decltype(&::secret_service_store) store = nullptr;
    decltype(&::secret_service_store_finish) storeFinish = nullptr;
    decltype(&::secret_service_delete_item_dbus_path) deleteItem = nullptr;
    decltype(&::secret_service_delete_item_dbus_path_finish) deleteItemFinish = nullptr;
    decltype(&::secret_item_new_for_dbus_path) itemNew = nullptr;
    decltype(&::secret_item_new_for_dbus_path_finish) itemNewFinish = nullptr;
    decltype(&::secret_item_set_secret) setSecret = nullptr;
    decltype(&::secret_item_set_secret_finish) setSecretFinish = nullptr;
    decltype(&::secret_value_new) valueNew = nullptr;
    decltype(&::secret_value_get) valueGet = nullptr;
    decltype(&::secret_value_unref) valueUnref = nullptr;

private:
    [[nodiscard]] bool resolve(void *handle);
};

} // namespace orvesa
