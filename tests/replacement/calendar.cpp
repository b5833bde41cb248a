// A calendar in which every day is a Wednesday.
// Partner: replacement/calendar.h
#include "replacement/calendar.h"

int Ondrel::getWeekDay(int, int, int) {
  return 3;
}
