## Interop matrix: for every netCDF format and every type it allows, a variable of netCDF
## shape (2, 3) and two attributes (of the variable and global; none of the Vlen type, which
## python3-netcdf4 cannot handle) written here read bit for bit the same in python3-netcdf4
## (A), which writes what it read to a file of its own that reads the same here (B). Both
## sides reduce values to the same canonical text (tests/interop/interop_matrix.py). Types a
## format does not allow must be refused. The formats x types summary goes to stdout and
## interop-matrix.txt.

## Types: key, name in the canonical lines, operation suffix. Formats: name, create mode,
## allowed types, what ncdump -k calls it, python's data model.
%!function [tt, ff] = matrix ()
%!  tt = {'byte', 'NC_BYTE', 'Schar';  'char', 'NC_CHAR', 'Text';  'short', 'NC_SHORT', 'Short';
%!        'int', 'NC_INT', 'Int';  'float', 'NC_FLOAT', 'Float';  'double', 'NC_DOUBLE', 'Double';
%!        'ubyte', 'NC_UBYTE', 'Uchar';  'ushort', 'NC_USHORT', 'Ushort';  'uint', 'NC_UINT', 'Uint';
%!        'int64', 'NC_INT64', 'Int64';  'uint64', 'NC_UINT64', 'Uint64';
%!        'string', 'NC_STRING', 'String';  'vlen', 'vlen(NC_INT)', 'Vlen'};
%!  p = @(name) netcdflib ('parameter', name);
%!  [classic, cdf5] = deal (tt(1:6, 1)', tt(1:11, 1)');
%!  ff = {'classic', p('NC_CLOBBER'), classic, 'classic', 'NETCDF3_CLASSIC';
%!        '64bit_offset', p('NC_64BIT_OFFSET'), classic, '64-bit offset', 'NETCDF3_64BIT_OFFSET';
%!        'cdf5', 32, cdf5, 'cdf5', 'NETCDF3_64BIT_DATA';
%!        'netcdf4', p('NC_NETCDF4'), tt(:, 1)', 'netCDF-4', 'NETCDF4';
%!        'netcdf4_classic', p('NC_NETCDF4') + p('NC_CLASSIC_MODEL'), classic, ...
%!        'netCDF-4 classic model', 'NETCDF4_CLASSIC'};
%!endfunction

## Six values of each type with its extremes (floats: a negative NaN with a payload,
## infinities, -0, least denormal, max); the global attribute holds them reversed, text
## attributes hold UTF-8 text of their own (é€😀 z, A~ñ).
%!function v = samples (key, item)
%!  switch key
%!    case 'byte',   v = int8 ([-128 127 0 -1 1 85]);
%!    case 'ubyte',  v = uint8 ([0 255 128 127 1 170]);
%!    case 'short',  v = int16 ([-32768 32767 0 -1 256 -256]);
%!    case 'ushort', v = uint16 ([0 65535 32768 32767 1 43690]);
%!    case 'int',    v = int32 ([intmin('int32') intmax('int32') 0 -1 65536 -65536]);
%!    case 'uint',   v = uint32 ([0 intmax('uint32') 2^31 2^31-1 1 2863311530]);
%!    case 'int64',  v = [intmin('int64') intmax('int64') 0 -1 int64(2^53)+1 -int64(2^53)-1];
%!    case 'uint64'
%!      v = [uint64(0) intmax('uint64') uint64(2^63) uint64(intmax('int64')) uint64(2^53)+1 1];
%!    case 'float'
%!      v = hex2num ({'ffc00123', '7f800000', 'ff800000', '80000000', '00000001', '7f7fffff'}, ...
%!                   'single')';
%!    case 'double'
%!      v = hex2num ({'fff8000000000123', '7ff0000000000000', 'fff0000000000000', ...
%!                    '8000000000000000', '0000000000000001', 'ffefffffffffffff'})';
%!    case 'char'
%!      v = char ({[65 0 127 128 233 255], [195 169 226 130 172 240 159 152 128 32 122], ...
%!                 [65 126 195 177]}{strcmp (item, {'var', 'att', 'gatt'})});
%!      return;
%!    case 'string'
%!      v = {'', 'a', char([195 169]), [char([226 130 172]) 'uro'], char([240 159 152 128]), ...
%!           "tab\there"};
%!    case 'vlen'
%!      v = {int32([]), intmin('int32'), int32([1; 2; 3]), [intmax('int32'); -1], int32([]), ...
%!           int32(0)};
%!  end
%!  if (strcmp (item, 'gatt'))
%!    v = v(end:-1:1);
%!  end
%!endfunction

## Numbers and text as the hex of their bytes, strings and Vlen elements in "(,)".
%!function s = canon (v)
%!  if (iscell (v))
%!    s = ['(' cellfun(@(e) [canon(e) ','], v(:)', 'UniformOutput', false){:} ')'];
%!  elseif (ischar (v))
%!    s = sprintf ('%02x', uint8 (v));
%!  else
%!    s = sprintf ('%02x', typecast (v(:), 'uint8'));
%!  end
%!endfunction

## The type's name in the canonical lines (the first twelve rows of the types are in the
## order of their ids).
%!function name = type_name (nc, xtype)
%!  name = matrix (){min (xtype, 13), 2};
%!  if (xtype > 12)
%!    [~, ~, base, ~, typeclass] = netcdflib ('inqUserType', nc, xtype);
%!    assert ([base typeclass], [4 13]);   # Vlen of NC_INT
%!  end
%!endfunction

## Defines and writes every allowed type; tries the others, which must be refused with a
## netCDF error (the Vlen type itself is defined in the try: formats without user types
## refuse it there).
%!function write_file (file, mode, allowed, tt)
%!  p = @(name) netcdflib ('parameter', name);
%!  nc = netcdflib ('create', file, mode);
%!  dims = [netcdflib('defDim', nc, 'x', 3), netcdflib('defDim', nc, 'y', 2)];
%!  for k = 1:rows (tt)
%!    [key, desc, suffix] = tt{k, :};
%!    try
%!      xtype = {@() p(desc), @() netcdflib('defVlen', nc, 'vint', p('NC_INT'))}{1 + strcmp (key, 'vlen')}();
%!      varid = netcdflib ('defVar', nc, key, xtype, dims);
%!    catch err
%!      if (any (strcmp (key, allowed)) || ! strncmp (err.identifier, 'QUARNA:imagesci:netcdf:', 23))
%!        rethrow (err);
%!      end
%!      continue;
%!    end
%!    assert (any (strcmp (key, allowed)), '%s: %s accepted, not allowed in the format', file, key);
%!    if (strcmp (key, 'vlen')), continue; end   # no attributes of a Vlen type
%!    netcdflib (['putAtt' suffix], nc, varid, 'a', xtype, samples (key, 'att'));
%!    netcdflib (['putAtt' suffix], nc, p('NC_GLOBAL'), ['g_' key], xtype, samples (key, 'gatt'));
%!  end
%!  netcdflib ('endDef', nc);
%!  for k = find (ismember (tt(:, 1), allowed))'
%!    v = samples (tt{k, 1}, 'var');
%!    netcdflib (['putVar' tt{k, 3}], nc, netcdflib ('inqVarID', nc, tt{k, 1}), reshape (v, 3, 2));
%!  end
%!  netcdflib ('sync', nc);
%!  netcdflib ('close', nc);
%!endfunction

## The canonical lines of FILE read here, by "KEY ITEM".
%!function got = read_file (file, allowed, tt)
%!  got = containers.Map ();
%!  nc = netcdflib ('open', file, 'NC_NOWRITE');
%!  for k = find (ismember (tt(:, 1), allowed))'
%!    [key, ~, suffix] = tt{k, :};
%!    varid = netcdflib ('inqVarID', nc, key);
%!    [~, xtype] = netcdflib ('inqVar', nc, varid);
%!    data = netcdflib (['getVar' suffix], nc, varid);
%!    got([key ' var']) = sprintf ('%s %dx%d %s', type_name (nc, xtype), ...
%!                                 size (data)([2 1]), canon (data));
%!    if (strcmp (key, 'vlen')), continue; end
%!    for item = {'att', varid, 'a'; 'gatt', netcdflib('parameter', 'NC_GLOBAL'), ['g_' key]}'
%!      [xtype, len] = netcdflib ('inqAtt', nc, item{2}, item{3});
%!      value = netcdflib (['getAtt' suffix], nc, item{2}, item{3});
%!      assert (isrow (value) && numel (value) == len, '%s %s: %s', key, item{1}, ...
%!              mat2str (size (value)));
%!      got([key ' ' item{1}]) = sprintf ('%s %d %s', type_name (nc, xtype), len, canon (value));
%!    end
%!  end
%!  netcdflib ('close', nc);
%!endfunction

## One cell per format and type: pass, FAIL or - (not allowed, and refused).
%!test
%! work = work_dir ();
%! [tt, ff] = matrix ();
%! for f = 1:rows (ff)
%!   write_file (fullfile (work, ['oct-' ff{f, 1} '.nc']), ff{f, 2:3}, tt);
%! end
%! out = interop ('interop_matrix.py', work, ff(:, [1 5])'{:});
%! lines = vertcat (regexp (out, '(\S+ \S+ \S+) ([^\n]*)', 'tokens'){:});
%! python = containers.Map (lines(:, 1), lines(:, 2));
%! cells = repmat ({'-'}, rows (ff), rows (tt));
%! details = {};
%! for f = 1:rows (ff)
%!   fmt = ff{f, 1};
%!   pyfile = fullfile (work, ['py-' fmt '.nc']);
%!   assert ({strtrim(ncdump ('-k', pyfile)), python([fmt ' - model'])}, ff(f, 4:5));
%!   here = read_file (pyfile, ff{f, 3}, tt);
%!   for t = find (ismember (tt(:, 1), ff{f, 3}))'
%!     cells{f, t} = 'pass';
%!     for item = {'var', 'att', 'gatt'}(1:3 - 2 * strcmp (tt{t, 1}, 'vlen'))
%!       v = samples (tt{t, 1}, item{1});
%!       want = sprintf ('%s %s %s', tt{t, 2}, {'2x3', num2str(numel (v))}{1 + ! strcmp (item{1}, 'var')}, ...
%!                       canon (v));
%!       id = [tt{t, 1} ' ' item{1}];
%!       for c = {'A', python, [fmt ' ' id]; 'B', here, id}'
%!         got = '(missing)';
%!         if (isKey (c{2}, c{3})), got = c{2}(c{3}); end
%!         if (! strcmp (got, want))
%!           cells{f, t} = 'FAIL';
%!           details{end+1} = sprintf ('  %s %s %s: want %s, got %s\n', c{1}, fmt, id, want, got);
%!         end
%!       end
%!     end
%!   end
%! end
%! table = [{'format'}, tt(:, 1)'; ff(:, 1), cells]';
%! summary = ["interop matrix, python3-netcdf4 and netcdflib, both ways\n" ...
%!            sprintf(['%-16s' repmat(' %-6s', 1, rows (tt)) "\n"], table{:}) ...
%!            sprintf('%d pass, %d FAIL, %d not allowed (refused)\n', sum (strcmp (cells(:), 'pass')), ...
%!                    numel (details), sum (strcmp (cells(:), '-'))) details{:}];
%! printf ('%s', summary);
%! fid = fopen (fullfile (fileparts (getenv ('NETCDFLIB_TEST_TMP')), 'interop-matrix.txt'), 'w');
%! fputs (fid, summary);
%! fclose (fid);
%! assert (isempty (details), '%s', [details{:}]);
