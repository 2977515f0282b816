#pragma once
// State of the map subsystem: the projection and its parameters, the map axis system,
// the data resolution and the work space of map drawing. zorini resets it.

namespace zorvel {

struct MapState {
  bool active = false;  // a map axis system (grafmp) is in force
};

}  // namespace zorvel
