// The members of station.json: tables that read, write and document them.
#pragma once

#include "simwin/station/JsonView.h"
#include "simwin/station/Member.h"
#include "simwin/station/Station.h"

namespace simwin {

// What the object tells, into a station. Texts are in the code page in force. Throws ReadError for what is wrong with a
// member, and for one that is not known.
void readStationMembers(const JsonView& view, Station& station);

// The object that tells the station, members in the order of the tables; what is not described is left out.
JsonView::Json stationMembers(const Station& station);

// When and by what a station was collected, as it stands beside a record's fields too. What is unknown is left out.
JsonView::Json collectedJson(const Collected& collected);
Collected readCollected(const JsonView& view);

// Every member as people are told of it, and the parts of a text that a companion's call fills in.
MemberTexts stationMemberTexts();
MemberTexts companionTextMembers();

// Visits the texts that may tell whose the station is, in the order of the tables, but for the names in `absent`.
void eachToldText(Station& station, const TextVisitor& visit);

// What stands at a place of the file.
ToldAt toldAt(PathBelow path);

// Where the name that is the station's own begins in a member's path with dots, such as "environment.KVIP": at its end
// when there is none, and at its beginning when it is no member's path.
std::size_t ownNameIn(std::string_view dottedPath);

}  // namespace simwin
