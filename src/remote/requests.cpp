// The requests about instances, their properties, and errors.
#include "qxpaf/remote.h"
#include "remote/replies.h"
#include "remote/request.h"

using namespace qxpaf;

int OpenPafIdViaSocket(int* id)
{
  return CallForOpen(Request("pafOpenPafId").Text(), id);
}

int OpenArfIdViaSocket(int* id, int memoryMode, const char* arf)
{
  return CallForOpen(Request("pafOpenArfId", memoryMode, arf).Text(), id);
}

int OpenPafMemIdViaSocket(int* id, int memoryMode)
{
  return CallForOpen(Request("pafOpenPafMemId", memoryMode).Text(), id);
}

int ClosePafIdViaSocket(int id)
{
  return CallForStatus(Request("pafClosePafId", id).Text());
}

int GetPropertiesIdViaSocket(int id, const char* names, char* out, int size)
{
  return CallForText(Request("pafGetPropertiesId", id, names).Text(), out, size);
}

int SetPropertiesIdViaSocket(int id, const char* name, const char* value)
{
  return CallForStatus(Request("pafSetPropertiesId", id, name, value).Text());
}

int SetGeographicalCodesIdViaSocket(int id, const char* codes)
{
  return CallForStatus(Request("pafSetGeographicalCodesId", id, codes).Text());
}

int GetErrorDescriptionViaSocket(char* out, int code, int size)
{
  return CallForText(Request("pafGetErrorDescription", code).Text(), out, size);
}
