// A session manager of the X Window System with nothing but the protocol, for tests of what a program does when its
// session is saved and ends.
//
// Its first line of output is the address for SESSION_MANAGER. It says in one line each what its clients do:
// "registered", "restart N" (their wish for later sessions, by its number in the protocol), "saved", "closed".
// Commands are lines too: "shutdown" (everything is saved, then ended), "cancel" (the same, but changed its mind once
// everything is saved).

#include <array>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include <X11/ICE/ICElib.h>
#include <X11/ICE/ICEutil.h>
#include <X11/SM/SMlib.h>
#include <poll.h>
#include <unistd.h>

// Declared in no public header, and what every session manager calls to stay off the network.
extern "C" int _IceTransNoListen(const char *protocol); // NOLINT

namespace {

enum class Ending { none, shutdown, cancel };

struct Session {
    std::vector<SmsConn> clients;
    Ending ending = Ending::none;
};

void say(const std::string &line)
{
    std::printf("%s\n", line.c_str());
    std::fflush(stdout);
}

int registerClient(SmsConn client, SmPointer data, char *previous)
{
    char *const identifier = previous != nullptr ? previous : SmsGenerateClientID(client);
    SmsRegisterClientReply(client, identifier);
    std::free(identifier);
    static_cast<Session *>(data)->clients.push_back(client);
    say("registered");
    if (previous == nullptr) { // a new client's state is saved at once
        SmsSaveYourself(client, SmSaveLocal, False, SmInteractStyleNone, False);
    }
    return 1;
}

void setProperties(SmsConn, SmPointer, int count, SmProp **properties)
{
    for (int index = 0; index < count; ++index) {
        SmProp *const property = properties[index];
        if (std::string_view(property->name) == SmRestartStyleHint && property->num_vals == 1) {
            say("restart " + std::to_string(*static_cast<const unsigned char *>(property->vals[0].value)));
        }
        SmFreeProperty(property);
    }
    std::free(properties);
}

void saved(SmsConn client, SmPointer data, Bool)
{
    auto &session = *static_cast<Session *>(data);
    say("saved");
    if (session.ending == Ending::shutdown) {
        SmsDie(client);
    } else if (session.ending == Ending::cancel) {
        SmsShutdownCancelled(client);
        session.ending = Ending::none;
    } else {
        SmsSaveComplete(client);
    }
}

void closed(SmsConn client, SmPointer data, int count, char **reasons)
{
    SmFreeReasons(count, reasons);
    std::erase(static_cast<Session *>(data)->clients, client);
    IceConn const connection = SmsGetIceConnection(client);
    SmsCleanUp(client);
    IceSetShutdownNegotiation(connection, False);
    IceCloseConnection(connection);
    say("closed");
}

Status welcome(SmsConn, SmPointer data, unsigned long *mask, SmsCallbacks *callbacks, char **)
{
    *mask = SmsRegisterClientProcMask | SmsInteractRequestProcMask | SmsInteractDoneProcMask |
            SmsSaveYourselfRequestProcMask | SmsSaveYourselfP2RequestProcMask | SmsSaveYourselfDoneProcMask |
            SmsCloseConnectionProcMask | SmsSetPropertiesProcMask | SmsDeletePropertiesProcMask |
            SmsGetPropertiesProcMask;
    callbacks->register_client = {registerClient, data};
    callbacks->interact_request = {[](SmsConn client, SmPointer, int) { SmsInteract(client); }, data};
    callbacks->interact_done = {[](SmsConn, SmPointer, Bool) {}, data};
    callbacks->save_yourself_request = {[](SmsConn, SmPointer, int, Bool, int, Bool, Bool) {}, data};
    callbacks->save_yourself_phase2_request = {[](SmsConn client, SmPointer) { SmsSaveYourselfPhase2(client); }, data};
    callbacks->save_yourself_done = {saved, data};
    callbacks->close_connection = {closed, data};
    callbacks->set_properties = {setProperties, data};
    callbacks->delete_properties = {[](SmsConn, SmPointer, int count, char **names) {
                                        for (int index = 0; index < count; ++index) {
                                            std::free(names[index]);
                                        }
                                        std::free(names);
                                    },
                                    data};
    callbacks->get_properties = {[](SmsConn client, SmPointer) { SmsReturnProperties(client, 0, nullptr); }, data};
    return 1;
}

void obey(std::string_view command, Session &session)
{
    session.ending = command == "shutdown" ? Ending::shutdown : command == "cancel" ? Ending::cancel : Ending::none;
    if (session.ending != Ending::none) {
        for (SmsConn const client : session.clients) {
            SmsSaveYourself(client, SmSaveBoth, True, SmInteractStyleAny, False);
        }
    }
}

void accept(IceListenObj listener, std::vector<IceConn> &connections)
{
    IceAcceptStatus status = IceAcceptSuccess;
    IceConn const connection = IceAcceptConnection(listener, &status);
    if (connection != nullptr && status == IceAcceptSuccess) {
        connections.push_back(connection);
    }
}

/// Until the input ends.
void serve(const std::vector<IceListenObj> &listeners, std::vector<IceConn> &connections, Session &session)
{
    std::string input;
    while (true) {
        std::vector<pollfd> ready{{STDIN_FILENO, POLLIN, 0}};
        for (IceListenObj const listener : listeners) {
            ready.push_back({IceGetListenConnectionNumber(listener), POLLIN, 0});
        }
        const std::vector<IceConn> served = connections;
        for (IceConn const connection : served) {
            ready.push_back({IceConnectionNumber(connection), POLLIN, 0});
        }
        ::poll(ready.data(), ready.size(), -1);
        if (ready[0].revents != 0) {
            std::array<char, 100> bytes{};
            const ssize_t count = ::read(STDIN_FILENO, bytes.data(), bytes.size());
            if (count <= 0) {
                return;
            }
            input.append(bytes.data(), static_cast<std::size_t>(count));
            for (std::size_t end = input.find('\n'); end != std::string::npos; end = input.find('\n')) {
                obey(input.substr(0, end), session);
                input.erase(0, end + 1);
            }
        }
        for (std::size_t index = 0; index < served.size(); ++index) {
            if (ready[1 + listeners.size() + index].revents != 0 &&
                IceProcessMessages(served[index], nullptr, nullptr) != IceProcessMessagesSuccess) {
                std::erase(connections, served[index]);
            }
        }
        for (std::size_t index = 0; index < listeners.size(); ++index) {
            if (ready[1 + index].revents != 0) {
                accept(listeners[index], connections);
            }
        }
    }
}

} // namespace

int main()
{
    Session session;
    std::array<char, 256> message{};
    const auto everybodyHere = [](char *) -> Bool { return True; };
    _IceTransNoListen("tcp");
    IceSetIOErrorHandler([](IceConn) {});
    int count = 0;
    IceListenObj *listeners = nullptr;
    if (SmsInitialize("test", "1", welcome, &session, everybodyHere, message.size(), message.data()) == 0 ||
        IceListenForConnections(&count, &listeners, message.size(), message.data()) == 0) {
        std::fprintf(stderr, "%s\n", message.data());
        return 1;
    }
    for (int index = 0; index < count; ++index) {
        IceSetHostBasedAuthProc(listeners[index], everybodyHere);
    }
    char *const address = IceComposeNetworkIdList(count, listeners);
    say(address);
    std::free(address);
    std::vector<IceConn> connections;
    serve({listeners, listeners + count}, connections, session);
    IceFreeListenObjs(count, listeners);
    return 0;
}
