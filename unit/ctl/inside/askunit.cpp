#include "unit/ctl/inside/askunit.h"

#include "unit/ctl/lineconnection.h"
#include "unit/ctl/problem.h"
#include "unit/ctl/supervisor.h"

namespace Unit {

std::string askUnit(const Platform::Virtual::Place& place, const std::string& request, int milliseconds) {
    LineConnection connection;
    if (!connection.connect(Supervisor::socketPath(place.folder)))
        throw Problem("No unit \"" + place.name + "\" runs. Start it: unitctl start --instance " + place.name);
    return connection.ask(request, milliseconds);
}

}  // namespace Unit
