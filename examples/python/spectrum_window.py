"""The control in a window of tkinter, with comtypes and the ATL host, which is part of Windows."""

import ctypes
import tkinter
from ctypes import wintypes

from comtypes import IUnknown
from comtypes.client import CreateObject, GetBestInterface, GetEvents

WS_CHILD_VISIBLE = 0x50000000
user32 = ctypes.WinDLL("user32")
user32.CreateWindowExW.restype = wintypes.HWND
user32.CreateWindowExW.argtypes = (
    [wintypes.DWORD, wintypes.LPCWSTR, wintypes.LPCWSTR, wintypes.DWORD]
    + [ctypes.c_int] * 4
    + [wintypes.HWND, wintypes.HMENU, wintypes.HINSTANCE, wintypes.LPVOID]
)
user32.MoveWindow.argtypes = [wintypes.HWND] + [ctypes.c_int] * 4 + [wintypes.BOOL]
atl = ctypes.WinDLL("atl")
atl.AtlAxGetControl.argtypes = [wintypes.HWND, ctypes.POINTER(ctypes.POINTER(IUnknown))]


class Events:
    """Methods with the names of the events. They are called on the thread of the window."""

    def ChgFreqRange(self, dMin, dMax):
        root.title(f"{dMin:.3f} to {dMax:.3f} MHz")


root = tkinter.Tk()
root.geometry("900x600")
frame = tkinter.Frame(root)
frame.pack(fill="both", expand=True)
root.update()

atl.AtlAxWinInit()
host = user32.CreateWindowExW(
    0, "AtlAxWin", "kvBandscope.kvBandscope", WS_CHILD_VISIBLE,
    0, 0, frame.winfo_width(), frame.winfo_height(), frame.winfo_id(), None, None, None,
)
unknown = ctypes.POINTER(IUnknown)()
if not host or atl.AtlAxGetControl(host, ctypes.byref(unknown)) != 0:
    raise SystemExit("The control cannot be created. Register it in the bitness of Python.")
scope = GetBestInterface(unknown)
connection = GetEvents(scope, Events())  # the events stop when this is released
frame.bind("<Configure>", lambda event: user32.MoveWindow(host, 0, 0, event.width, event.height, True))

channel = CreateObject("kvBandscope.FreqSlot")
channel.sKey = "TX1"
channel.dFreq = 462.55
channel.dFreqLo = 462.542
channel.dFreqHi = 462.558
channel.dPwrDBM = 46.99
channel.lColor = 0xB4771F
scope.AddTXChnl(channel)
scope.FreqEndBuffer = 0
scope.nGridX = 10
scope.DisplayMaxPwr = 60
scope.DrawByRange(462.5, 462.7)
root.mainloop()
