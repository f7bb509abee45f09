// Numbers shared by the program and its resources.
#pragma once

#define IDI_BANDSCOPE 1
#define IDM_MENU 10
#define IDA_KEYS 11

#define IDC_OPEN 100
#define IDC_SAVE 101
#define IDC_EXIT 102
#define IDC_COPY 103
#define IDC_PRINT 104
#define IDC_SHOW_ALL 110
#define IDC_REDRAW 111
#define IDC_MOUSE_REPORT 112
#define IDC_BACK 130
#define IDC_FORWARD 131
#define IDC_ZOOM_IN 132
#define IDC_ZOOM_OUT 133
#define IDC_WHEEL_ZOOM 134
#define IDC_MARKER 135
#define IDC_SNAP 136
#define IDC_POWER_AXIS 137
#define IDC_LEGEND 138
#define IDC_LABELS 139
#define IDC_HITS 150
#define IDC_HITS_LIST 151
#define IDC_HITS_ORDER 152
#define IDC_HITS_POWER 153
#define IDC_HITS_RECEIVER 154
#define IDC_HITS_CLEAR 155
#define IDC_HITS_EXPORT 156
#define IDC_HITS_CANCEL 157
#define IDC_HITS_SUMMARY 158
#define IDC_HITS_EMPTY 159
#define IDC_HITS_PROGRESS 160
#define IDC_SECOND 122
#define IDC_THIRD 123
#define IDC_FIFTH 125
#define IDC_EVERY_FORM 126

// One for each recent plan.
#define IDC_RECENT_FIRST 170
#define IDC_RECENT_LAST 178
#define IDC_RECENT_SEPARATOR 179
#define IDC_ABOUT 180
#define IDD_PLAN_ERRORS 181
#define IDD_ABOUT 182
#define IDC_SUMMARY 183
#define IDC_TEXT 184
#define IDC_COPY_TEXT 185
#define IDC_PRODUCT_ICON 186
