-- Lets Kelo control REAPER: load it once from REAPER's action list, it goes on until REAPER ends.
--
-- Kelo writes lines "NUMBER COMMAND" into "kelo-commands" beside this script; this script writes
-- one line into "kelo-status" twice a second, so that Kelo knows that somebody listens. Only the
-- commands of the table below are obeyed; nothing that a file holds is ever run.

local folder = select(2, reaper.get_action_context()):match("^(.*)[/\\]") or "."
local commands_file = folder .. "/kelo-commands"
local status_file = folder .. "/kelo-status"

local most_bytes = 4096
local most_commands = 16 -- obeyed at a time
local status_every = 0.5 -- seconds
local look_every = 0.05
local slowest, fastest, tempo_step = 20, 400, 5 -- beats a minute

local record_action = 1013
local next_marker_action = 40173

local function selected()
  return reaper.GetSelectedTrack(0, 0)
end

local function select_by(step)
  local count = reaper.CountTracks(0)
  if count == 0 then return end
  local track = selected()
  local at = track and math.floor(reaper.GetMediaTrackInfo_Value(track, "IP_TRACKNUMBER")) - 1
  local wanted = at and at + step or (step > 0 and 0 or count - 1)
  wanted = math.max(0, math.min(count - 1, wanted))
  reaper.SetOnlyTrackSelected(reaper.GetTrack(0, wanted))
end

local function change_tempo(step)
  local tempo = reaper.Master_GetTempo() + step
  reaper.SetCurrentBPM(0, math.max(slowest, math.min(fastest, tempo)), true)
end

local function playing()
  return reaper.GetPlayState() & 1 == 1
end

local commands = {
  play = function() if not playing() then reaper.OnPlayButton() end end,
  stop = function() reaper.OnStopButton() end,
  record = function() reaper.Main_OnCommand(record_action, 0) end,
  start = function() reaper.SetEditCurPos(0, true, true) end,
  next_track = function() select_by(1) end,
  previous_track = function() select_by(-1) end,
  arm = function()
    local track = selected()
    if not track then return end
    local armed = reaper.GetMediaTrackInfo_Value(track, "I_RECARM")
    reaper.SetMediaTrackInfo_Value(track, "I_RECARM", armed == 1 and 0 or 1)
  end,
  undo = function() reaper.Undo_DoUndo2(0) end,
  add_marker = function()
    local at = playing() and reaper.GetPlayPosition() or reaper.GetCursorPosition()
    reaper.AddProjectMarker(0, false, at, 0, "", -1)
  end,
  next_marker = function() reaper.Main_OnCommand(next_marker_action, 0) end,
  faster = function() change_tempo(tempo_step) end,
  slower = function() change_tempo(-tempo_step) end,
}

-- The commands that wait, as pairs of number and name; none where the file is not ours.
local function waiting()
  local list = {}
  local file = io.open(commands_file, "r")
  if not file then return list end
  local text = file:read(most_bytes + 1) or ""
  file:close()
  if #text > most_bytes then return list end
  for line in text:gmatch("([^\n]*)\n") do
    local number, name = line:match("^(%d+) ([%l_]+)$")
    if number and #number <= 15 then list[#list + 1] = { tonumber(number), name } end
  end
  return list
end

local done = 0 -- what lay there before this script began is not obeyed
for _, command in ipairs(waiting()) do done = math.max(done, command[1]) end

local function obey()
  local count = 0
  for _, command in ipairs(waiting()) do
    local number, name = command[1], command[2]
    if number > done and count < most_commands then
      done = number
      count = count + 1
      if commands[name] then commands[name]() end
    end
  end
end

local beat = 0
local function tell()
  beat = beat + 1
  local file = io.open(status_file .. ".new", "w")
  if not file then return end
  local track = selected()
  local number = track and math.floor(reaper.GetMediaTrackInfo_Value(track, "IP_TRACKNUMBER")) or 0
  file:write(string.format("kelo-bridge 1 %d %d %d\n", beat, reaper.GetPlayState(), number))
  file:close()
  os.remove(status_file) -- some systems do not rename over a file
  os.rename(status_file .. ".new", status_file)
end

local next_look, next_status = 0, 0
local function run()
  local now = reaper.time_precise()
  if now >= next_look then
    next_look = now + look_every
    obey()
  end
  if now >= next_status then
    next_status = now + status_every
    tell()
  end
  reaper.defer(run)
end

run()
