-- Makes a page for man of a document: each row of a table is a term with what it means, since columns don't fit a
-- terminal, and sections are in capitals.

local inlines = pandoc.utils.blocks_to_inlines

-- What a further column says of a term: " (firmware: 0264C-01 V6.2)"; nothing where the cell is empty.
local function remark(header, cell)
  if #cell == 0 then return {} end
  local title = pandoc.utils.stringify(header)
  if not title:match("^%u%u") then  -- an abbreviation stays as it is
    title = pandoc.text.lower(title:sub(1, 1)) .. title:sub(2)
  end
  return {pandoc.Space(), pandoc.Str("(" .. title .. ":"), pandoc.Space(), pandoc.Span(inlines(cell)), pandoc.Str(")")}
end

function Table(element)
  local simple = pandoc.utils.to_simple_table(element)
  local entries = {}
  for _, row in ipairs(simple.rows) do
    local meaning = pandoc.List(inlines(row[2]))
    for column = 3, #row do
      meaning:extend(remark(simple.headers[column], row[column]))
    end
    table.insert(entries, {inlines(row[1]), {pandoc.Plain(meaning)}})
  end
  return pandoc.DefinitionList(entries)
end

function Header(element)
  return element:walk({Str = function(word) return pandoc.Str(pandoc.text.upper(word.text)) end})
end
