#pragma once

class NetLoad;

/// Whether there is a link or a connector of that id; a row is enough, also one that could not be loaded.
bool roadIsKnown(NetLoad &net, long roadId);
