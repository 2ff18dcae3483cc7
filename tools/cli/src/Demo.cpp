#include "Failures.h"
#include "Interrupt.h"
#include "Verbs.h"

#include <VarnelRepository/Server.h>

#include <iostream>

namespace VarnelAPI::Forms::cli {
namespace {

/// A house being built, with what was found in it.
constexpr const char* project = R"({"instances": [
{"location": "tower", "schemaName": "DynamicSchema", "className": "Defect", "instanceId": "D-1", "properties": {
  "_Subject": "Crack in the wall behind the lift", "_Description": "It runs from the floor to the window, 3 mm wide.",
  "Status": "Open", "Priority": "High", "AssignedTo": "Ada Birch", "_CreatedDate": "2026-11-02T08:15:00Z",
  "_DueDate": "2026-12-01T17:00:00Z", "Floor": 3}},
{"location": "tower", "schemaName": "DynamicSchema", "className": "Defect", "instanceId": "D-2", "properties": {
  "_Subject": "Socket without power", "Status": "Open", "Priority": "Normal", "AssignedTo": "Jonas Reed",
  "_CreatedDate": "2026-11-05T13:40:00Z", "_DueDate": "2026-11-27T17:00:00Z", "Floor": 1}},
{"location": "tower", "schemaName": "DynamicSchema", "className": "Defect", "instanceId": "D-3", "properties": {
  "_Subject": "Paint on the handrail", "Status": "Closed", "Priority": "Low", "AssignedTo": "Ada Birch",
  "_CreatedDate": "2026-10-19T09:00:00Z", "Closed": true, "Floor": 4}},
{"location": "tower", "schemaName": "DynamicSchema", "className": "Observation", "instanceId": "O-1", "properties": {
  "_Subject": "Scaffold without a rail", "Status": "Open", "Priority": "High", "AssignedTo": "Mina Sol",
  "_CreatedDate": "2026-11-10T07:30:00Z", "PeopleAtRisk": 4}},
{"location": "tower", "schemaName": "DynamicSchema", "className": "_Comment", "instanceId": "C-1", "owner": "D-1",
 "properties": {"Text": "The mason comes on Thursday", "Author": "Ada Birch", "CreatedDate": "2026-11-03T10:00:00Z"}},
{"location": "tower", "schemaName": "DynamicSchema", "className": "_Comment", "instanceId": "C-2", "owner": "D-1",
 "properties": {"Text": "Wider than last week", "Author": "Jonas Reed", "CreatedDate": "2026-11-09T15:20:00Z"}},
{"location": "tower", "schemaName": "DynamicSchema", "className": "Attachment", "instanceId": "A-1", "owner": "D-1",
 "properties": {"Name": "measures.txt", "Size": "30", "Caption": "Width by week", "CreatedDate": "2026-11-09T15:22:00Z"},
 "file": "d2VlayAxOiAzLDAgbW0Kd2VlayAyOiAzLDQgbW0K"},
{"location": "tower", "schemaName": "DynamicSchema", "className": "Attachment", "instanceId": "A-2", "owner": "D-2",
 "properties": {"Name": "wiring.txt", "Size": "19", "Caption": "Where it ends", "CreatedDate": "2026-11-06T08:00:00Z"},
 "file": "ZnVzZSAxMiwgbGVmdCBzaWRlCg=="},
{"location": "tower", "schemaName": "Lists", "className": "ListGroup", "instanceId": "L-1",
 "properties": {"Name": "Trades", "Lists": ["Masonry", "Electrics", "Paint"]}}
]})";

} // namespace

void demo(Options& options) try {
    repository::ServerOptions server;
    server.port = options.port;
    repository::Server repository(server);
    repository.seedText(project);
    std::cout << "A repository with a small project, \"tower\", is here until you press Ctrl-C:\n\n"
              << "  export VARNEL_FORMS_URL=" << repository.url() << " VARNEL_FORMS_LOCATION=tower\n\n"
              << "Try, in another terminal, with that line first:\n\n"
              << "  varnel-forms list issues\n"
              << "  varnel-forms get issues D-1\n"
              << "  varnel-forms update issues D-1 --set Status=Closed\n"
              << std::endl;
    Interrupt::wait();
    repository.stop();
} catch (const std::exception& error) {
    throw Told(std::string("the local repository does not run: ") + error.what());
}

} // namespace VarnelAPI::Forms::cli
