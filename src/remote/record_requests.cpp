// The requests for raw records. They send no Id: the server has the functions for its default instance only.
#include "qxpaf/remote.h"
#include "remote/replies.h"
#include "remote/request.h"

using namespace qxpaf;

int ReadLocalityRecordIdViaSocket(int /*id*/, long record, char* text, long* a, long* b)
{
  return CallForRecord(Request("pafReadLocalityRecord", record).Text(), text, a, b);
}

int ReadGroupRecordIdViaSocket(int /*id*/, long record, char* text, long* a, long* b)
{
  return CallForRecord(Request("pafReadGroupRecord", record).Text(), text, a, b);
}

int ReadPointRecordIdViaSocket(int /*id*/, long record, char* out, int size)
{
  return CallForText(Request("pafReadPointRecord", record).Text(), out, size);
}

int ReadSynonymRecordIdViaSocket(int /*id*/, long record, char* text, long* a)
{
  return CallForRecord(Request("pafReadSynonymRecord", record).Text(), text, a, nullptr);
}

int ReadBorderRecordIdViaSocket(int /*id*/, int record, int* values, int* count)
{
  return CallForList(Request("pafReadBorderRecord", record).Text(), values, count);
}

int GetLocalityRecordCountIdViaSocket(int /*id*/)
{
  return CallForStatus(Request("pafGetLocalityRecordCount").Text());
}

int GetGroupRecordCountIdViaSocket(int /*id*/)
{
  return CallForStatus(Request("pafGetGroupRecordCount").Text());
}

int GetPointRecordCountIdViaSocket(int /*id*/)
{
  return CallForStatus(Request("pafGetPointRecordCount").Text());
}

int GetSynonymRecordCountIdViaSocket(int /*id*/)
{
  return CallForStatus(Request("pafGetSynonymRecordCount").Text());
}
