"""A session manager for the X session management protocol, on the library that clients use."""

import ctypes
import select
from ctypes import CFUNCTYPE, POINTER, byref, c_char_p, c_int, c_ulong, c_void_p

ICE = ctypes.CDLL("libICE.so.6")
SM = ctypes.CDLL("libSM.so.6")
SAVE_LOCAL, SAVE_BOTH = 1, 2
INTERACT_NONE, INTERACT_ANY = 0, 2
LOST = 1
ERROR_SIZE = 256
# The order is that of the library. This manager handles those with a function here.
CALLBACKS = {
    "register_client": CFUNCTYPE(c_int, c_void_p, c_void_p, c_void_p),
    "interact_request": CFUNCTYPE(None, c_void_p, c_void_p, c_int),
    "interact_done": CFUNCTYPE(None, c_void_p, c_void_p, c_int),
    "save_yourself_request": CFUNCTYPE(None, c_void_p, c_void_p, c_int, c_int, c_int, c_int, c_int),
    "save_yourself_phase2_request": CFUNCTYPE(None, c_void_p, c_void_p),
    "save_yourself_done": CFUNCTYPE(None, c_void_p, c_void_p, c_int),
    "close_connection": CFUNCTYPE(None, c_void_p, c_void_p, c_int, c_void_p),
    "set_properties": CFUNCTYPE(None, c_void_p, c_void_p, c_int, c_void_p),
    "delete_properties": CFUNCTYPE(None, c_void_p, c_void_p, c_int, c_void_p),
    "get_properties": CFUNCTYPE(None, c_void_p, c_void_p),
}
NEW_CLIENT = CFUNCTYPE(c_int, c_void_p, c_void_p, POINTER(c_ulong), POINTER(c_void_p),
                       POINTER(c_char_p))
IS_HOST_WELCOME = CFUNCTYPE(c_int, c_char_p)
ON_LOST_CLIENT = CFUNCTYPE(None, c_void_p)


class Value(ctypes.Structure):
    _fields_ = [("length", c_int), ("value", c_void_p)]


class Property(ctypes.Structure):
    _fields_ = [("name", c_char_p), ("type", c_char_p), ("count", c_int),
                ("values", POINTER(Value))]


def function(library, name, result, *arguments):
    found = getattr(library, name)
    found.restype, found.argtypes = result, arguments
    return found


initialize = function(SM, "SmsInitialize", c_int, c_char_p, c_char_p, NEW_CLIENT, c_void_p,
                      IS_HOST_WELCOME, c_int, c_char_p)
generate_id = function(SM, "SmsGenerateClientID", c_char_p, c_void_p)
reply_to_registration = function(SM, "SmsRegisterClientReply", c_int, c_void_p, c_char_p)
save_yourself = function(SM, "SmsSaveYourself", None, c_void_p, c_int, c_int, c_int, c_int)
save_complete = function(SM, "SmsSaveComplete", None, c_void_p)
die = function(SM, "SmsDie", None, c_void_p)
clean_up = function(SM, "SmsCleanUp", None, c_void_p)
connection_of = function(SM, "SmsGetIceConnection", c_void_p, c_void_p)
listen = function(ICE, "IceListenForConnections", c_int, POINTER(c_int), POINTER(POINTER(c_void_p)),
                  c_int, c_char_p)
addresses = function(ICE, "IceComposeNetworkIdList", c_char_p, c_int, POINTER(c_void_p))
welcome_hosts = function(ICE, "IceSetHostBasedAuthProc", None, c_void_p, IS_HOST_WELCOME)
listening_number = function(ICE, "IceGetListenConnectionNumber", c_int, c_void_p)
accept = function(ICE, "IceAcceptConnection", c_void_p, c_void_p, POINTER(c_int))
connection_number = function(ICE, "IceConnectionNumber", c_int, c_void_p)
on_lost_client = function(ICE, "IceSetIOErrorHandler", c_void_p, ON_LOST_CLIENT)
process_messages = function(ICE, "IceProcessMessages", c_int, c_void_p, c_void_p, c_void_p)


class SessionManager:
    """A session manager, of which a process has only one. It works only inside step()."""

    def __init__(self):
        self.properties = {}  # the properties of all clients, by their names
        self.saved = 0
        self._clients = []  # the clients in the session
        self._ending = []
        self._connections = {}
        self._callbacks = {name: kind(getattr(self, "_" + name, lambda *_: None))
                           for name, kind in CALLBACKS.items()}
        self._new_client = NEW_CLIENT(self._join)
        self._welcome = IS_HOST_WELCOME(lambda host: 1)
        # Without this the library would end this process.
        self._note_lost_client = ON_LOST_CLIENT(lambda connection: None)
        on_lost_client(self._note_lost_client)
        error = ctypes.create_string_buffer(ERROR_SIZE)
        if not initialize(b"test", b"1", self._new_client, None, self._welcome, ERROR_SIZE, error):
            raise OSError(error.value)
        count, self._listening = c_int(), POINTER(c_void_p)()
        if not listen(byref(count), byref(self._listening), ERROR_SIZE, error):
            raise OSError(error.value)
        self._listeners = {}
        for number in range(count.value):
            welcome_hosts(self._listening[number], self._welcome)
            self._listeners[listening_number(self._listening[number])] = self._listening[number]
        local = [address for address in addresses(count, self._listening).decode().split(",")
                 if address.startswith("local/")]
        self.address = local[0]  # the value of SESSION_MANAGER for clients

    @property
    def joined(self):
        return len(self._clients)

    def step(self):
        """Answers what has arrived."""
        ready, _, _ = select.select([*self._listeners, *self._connections], [], [], 0.02)
        for number in ready:
            if number in self._listeners:
                status = c_int()
                connection = accept(self._listeners[number], byref(status))
                self._connections[connection_number(connection)] = connection
            elif (end := process_messages(self._connections[number], None, None)) != 0:
                connection = self._connections.pop(number)
                if end == LOST:  # without a request, or after the last one
                    self._clients = [client for client in self._clients
                                     if connection_of(client) != connection]

    def log_out(self):
        """Asks every client to save itself and, after that, to end."""
        self._ending = list(self._clients)
        for client in self._clients:
            save_yourself(client, SAVE_BOTH, 1, INTERACT_ANY, 0)

    def _join(self, client, _data, mask, callbacks, _failure):
        for number, callback in enumerate(self._callbacks.values()):
            callbacks[2 * number] = ctypes.cast(callback, c_void_p)
            callbacks[2 * number + 1] = None
        mask[0] = (1 << len(self._callbacks)) - 1
        self._clients.append(client)
        return 1

    def _register_client(self, client, _data, _former):
        reply_to_registration(client, generate_id(client))
        save_yourself(client, SAVE_LOCAL, 0, INTERACT_NONE, 0)
        return 1

    def _save_yourself_done(self, client, _data, _success):
        self.saved += 1
        (die if client in self._ending else save_complete)(client)

    def _set_properties(self, _client, _data, count, properties):
        each = ctypes.cast(properties, POINTER(POINTER(Property)))
        for number in range(count):
            found = each[number].contents
            self.properties[found.name.decode()] = [
                ctypes.string_at(found.values[i].value, found.values[i].length)
                for i in range(found.count)]

    def _close_connection(self, client, *_):
        self._clients.remove(client)
        clean_up(client)
