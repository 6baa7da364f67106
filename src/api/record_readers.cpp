/** Functions that old callers still link against. Raw records are not offered, so none of them does any work. */
#include "qxpaf/paf.h"

int pafGetBorderPostcodesId(int, short, char*, int)
{
  return PAF_ERR_NOT_IMPLEMENTED;
}
int pafReadLocalityRecordId(int, long, char*, long*, long*)
{
  return PAF_ERR_NOT_IMPLEMENTED;
}
int pafReadGroupRecordId(int, long, char*, long*, long*)
{
  return PAF_ERR_NOT_IMPLEMENTED;
}
int pafReadPointRecordId(int, long, char*, int)
{
  return PAF_ERR_NOT_IMPLEMENTED;
}
int pafReadSynonymRecordId(int, long, char*, long*)
{
  return PAF_ERR_NOT_IMPLEMENTED;
}
int pafReadBorderRecordId(int, int, int*, int*)
{
  return PAF_ERR_NOT_IMPLEMENTED;
}
int pafGetCornerGeocodesId(int, void*, void*, void*, void*)
{
  return PAF_ERR_NOT_IMPLEMENTED;
}
int pafGetLocalityRecordCountId(int)
{
  return 0;
}
int pafGetGroupRecordCountId(int)
{
  return 0;
}
int pafGetPointRecordCountId(int)
{
  return 0;
}
int pafGetSynonymRecordCountId(int)
{
  return 0;
}

int pafGetBorderPostcodes(short, char*, int)
{
  return PAF_ERR_NOT_IMPLEMENTED;
}
int pafReadLocalityRecord(long, char*, long*, long*)
{
  return PAF_ERR_NOT_IMPLEMENTED;
}
int pafReadGroupRecord(long, char*, long*, long*)
{
  return PAF_ERR_NOT_IMPLEMENTED;
}
int pafReadPointRecord(long, char*, int)
{
  return PAF_ERR_NOT_IMPLEMENTED;
}
int pafReadSynonymRecord(long, char*, long*)
{
  return PAF_ERR_NOT_IMPLEMENTED;
}
int pafReadBorderRecord(int, int*, int*)
{
  return PAF_ERR_NOT_IMPLEMENTED;
}
int pafGetLocalityRecordCount(void)
{
  return 0;
}
int pafGetGroupRecordCount(void)
{
  return 0;
}
int pafGetPointRecordCount(void)
{
  return 0;
}
int pafGetSynonymRecordCount(void)
{
  return 0;
}
